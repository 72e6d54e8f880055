#include "host/ViewMenu.h"

#include "look/LanguageSwitch.h"

#include <QActionGroup>
#include <QEvent>
#include <QToolBar>
#include <QToolButton>

namespace {

/// An action of the group that is chosen for a value.
QAction* choice(QActionGroup* group, const QString& text, const QVariant& value)
{
    auto* const action = new QAction(text, group);
    action->setCheckable(true);
    action->setData(value);
    return action;
}

void check(const QActionGroup* group, const QVariant& value)
{
    const auto actions = group->actions();
    for (QAction* action : actions)
        action->setChecked(action->data() == value);
}

} // namespace

ViewMenu::ViewMenu(QWidget* parent)
    : QMenu(parent)
    , m_languages(new QActionGroup(this))
    , m_looks(new QActionGroup(this))
    , m_endOfLanguages(addSeparator())
    , m_light(choice(m_looks, {}, false))
    , m_dark(choice(m_looks, {}, true))
{
    setObjectName(QStringLiteral("viewMenu"));
    setIcon(QIcon(QStringLiteral(":/toolbar/Resource/toolBar/view.png")));
    addActions(m_looks->actions());
    listLanguages();
    connect(this, &QMenu::aboutToShow, this, &ViewMenu::listLanguages);
    connect(m_languages, &QActionGroup::triggered, this,
            [this](const QAction* action) { emit sgChangeLanguage(action->data().toString()); });
    connect(m_looks, &QActionGroup::triggered, this,
            [this](const QAction* action) { emit darkChosen(action->data().toBool()); });
    retranslate();
}

void ViewMenu::listLanguages()
{
    qDeleteAll(m_languages->actions());
    const QMap<QString, QString> captions = LanguageSwitch::available();
    for (auto it = captions.begin(); it != captions.end(); ++it)
        insertAction(m_endOfLanguages, choice(m_languages, it.value(), it.key()));
    check(m_languages, m_language);
}

void ViewMenu::addTo(QToolBar* bar)
{
    bar->addAction(menuAction());
    if (auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(menuAction())))
        button->setPopupMode(QToolButton::InstantPopup);
}

void ViewMenu::setLanguage(const QString& language)
{
    m_language = language;
    check(m_languages, language);
}

void ViewMenu::setDark(bool dark)
{
    check(m_looks, dark);
}

void ViewMenu::retranslate()
{
    setTitle(tr("语言外观"));
    m_light->setText(tr("浅色"));
    m_dark->setText(tr("深色"));
}

void ViewMenu::changeEvent(QEvent* event)
{
    QMenu::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
