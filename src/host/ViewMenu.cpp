#include "host/ViewMenu.h"

#include "look/LanguageSwitch.h"
#include "look/keyboard/ScreenKeyboard.h"

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
    , m_keyboard(new ScreenKeyboard(this))
    , m_keyboards(new QActionGroup(this))
    , m_onTouch(choice(m_keyboards, {}, int(ScreenKeyboard::Comes::OnTouch)))
    , m_always(choice(m_keyboards, {}, int(ScreenKeyboard::Comes::Always)))
    , m_never(choice(m_keyboards, {}, int(ScreenKeyboard::Comes::Never)))
{
    setObjectName(QStringLiteral("viewMenu"));
    menuAction()->setObjectName(QStringLiteral("viewAction"));
    setIcon(QIcon(QStringLiteral(":/toolbar/Resource/toolBar/view.png")));
    addActions(m_looks->actions());
    addSeparator();
    addActions(m_keyboards->actions());
    check(m_keyboards, int(m_keyboard->comes()));
    listLanguages();
    connect(this, &QMenu::aboutToShow, this, &ViewMenu::listLanguages);
    connect(m_languages, &QActionGroup::triggered, this,
            [this](const QAction* action) { emit sgChangeLanguage(action->data().toString()); });
    connect(m_looks, &QActionGroup::triggered, this,
            [this](const QAction* action) { emit lookChosen(LookKind(action->data().toInt())); });
    connect(m_keyboards, &QActionGroup::triggered, m_keyboard,
            [this](const QAction* action) { m_keyboard->choose(ScreenKeyboard::Comes(action->data().toInt())); });
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
    m_onTouch->setText(tr("触摸时显示屏幕键盘"));
    m_always->setText(tr("总是显示屏幕键盘"));
    m_never->setText(tr("不显示屏幕键盘"));
}

void ViewMenu::changeEvent(QEvent* event)
{
    QMenu::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
