#include "host/ViewMenu.h"

#include "look/LanguageSwitch.h"

#include <QActionGroup>
#include <QEvent>

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
    , m_light(choice(m_looks, {}, int(LookKind::Light)))
    , m_dark(choice(m_looks, {}, int(LookKind::Dark)))
    , m_contrast(choice(m_looks, {}, int(LookKind::Contrast)))
{
    setObjectName(QStringLiteral("viewMenu"));
    menuAction()->setObjectName(QStringLiteral("viewAction"));
    setIcon(QIcon(QStringLiteral(":/toolbar/Resource/toolBar/view.png")));
    addActions(m_looks->actions());
    listLanguages();
    connect(this, &QMenu::aboutToShow, this, &ViewMenu::listLanguages);
    connect(m_languages, &QActionGroup::triggered, this,
            [this](const QAction* action) { emit sgChangeLanguage(action->data().toString()); });
    connect(m_looks, &QActionGroup::triggered, this,
            [this](const QAction* action) { emit lookChosen(LookKind(action->data().toInt())); });
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

void ViewMenu::setLanguage(const QString& language)
{
    m_language = language;
    check(m_languages, language);
}

void ViewMenu::setLook(LookKind look)
{
    check(m_looks, int(look));
}

void ViewMenu::retranslate()
{
    setTitle(tr("语言外观"));
    m_light->setText(tr("浅色"));
    m_dark->setText(tr("深色"));
    m_contrast->setText(tr("高对比度"));
}

void ViewMenu::changeEvent(QEvent* event)
{
    QMenu::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
