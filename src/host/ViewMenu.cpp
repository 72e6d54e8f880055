#include "host/ViewMenu.h"

#include <QActionGroup>
#include <QEvent>
#include <QToolBar>
#include <QToolButton>

namespace {

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
{
    setObjectName(QStringLiteral("viewMenu"));
    setIcon(QIcon(QStringLiteral(":/toolbar/Resource/toolBar/view.png")));
    // Each language by its own name, so that whoever reads only that one finds it.
    add(m_languages, QStringLiteral("Chinese"))->setText(QStringLiteral("中文"));
    add(m_languages, QStringLiteral("English"))->setText(QStringLiteral("English"));
    addSeparator();
    m_light = add(m_looks, false);
    m_dark = add(m_looks, true);
    connect(m_languages, &QActionGroup::triggered, this,
            [this](const QAction* action) { emit sgChangeLanguage(action->data().toString()); });
    connect(m_looks, &QActionGroup::triggered, this,
            [this](const QAction* action) { emit darkChosen(action->data().toBool()); });
    retranslate();
}

QAction* ViewMenu::add(QActionGroup* group, const QVariant& value)
{
    QAction* const action = addAction(QString());
    action->setCheckable(true);
    action->setData(value);
    group->addAction(action);
    return action;
}

void ViewMenu::addTo(QToolBar* bar)
{
    bar->addAction(menuAction());
    if (auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(menuAction())))
        button->setPopupMode(QToolButton::InstantPopup);
}

void ViewMenu::setLanguage(const QString& language)
{
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
