#include "look/keyboard/ScreenKeyboard.h"

#include "config/IniFile.h"
#include "look/keyboard/KeyPanel.h"
#include "platform/AppHome.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QInputMethod>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSpinBox>
#include <QTextEdit>
#include <QTimer>

namespace {

const QString lookFile = QStringLiteral("/user/look.ini");
const QString comesKey = QStringLiteral("Keyboard/Comes");
const QStringList names{QStringLiteral("touch"), QStringLiteral("always"), QStringLiteral("never")};

bool isTyped(const QWidget* widget)
{
    if (!widget || !widget->isEnabled())
        return false;
    if (const auto* line = qobject_cast<const QLineEdit*>(widget))
        return !line->isReadOnly();
    if (const auto* box = qobject_cast<const QAbstractSpinBox*>(widget))
        return !box->isReadOnly();
    if (const auto* box = qobject_cast<const QComboBox*>(widget))
        return box->isEditable();
    if (const auto* plain = qobject_cast<const QPlainTextEdit*>(widget))
        return !plain->isReadOnly();
    const auto* rich = qobject_cast<const QTextEdit*>(widget);
    return rich && !rich->isReadOnly();
}

/// The field whose part was touched.
QWidget* fieldAt(QWidget* touched)
{
    for (QWidget* each = touched; each && !each->isWindow(); each = each->parentWidget()) {
        if (QWidget* proxy = each->focusProxy(); isTyped(proxy))
            return proxy;
        if (isTyped(each))
            return each;
    }
    return nullptr;
}

bool wantsNumbers(const QWidget& field)
{
    const Qt::InputMethodHints numbers =
        Qt::ImhDigitsOnly | Qt::ImhFormattedNumbersOnly | Qt::ImhPreferNumbers | Qt::ImhDate | Qt::ImhTime;
    return qobject_cast<const QAbstractSpinBox*>(&field) || (field.inputMethodHints() & numbers);
}

/// What must stay seen: the field, or where it is typed in a large one.
QRect placeOf(const QWidget& field)
{
    constexpr int large = 120;
    const QRect cursor = field.inputMethodQuery(Qt::ImCursorRectangle).toRect();
    const QRect part = field.height() < large ? field.rect() : cursor.adjusted(-8, -8, 8, 8);
    return {field.mapToGlobal(part.topLeft()), part.size()};
}

/// A cell of a table that is being edited; its finger went down on the table.
bool isCell(const QWidget* widget)
{
    const QWidget* around = widget->parentWidget() ? widget->parentWidget()->parentWidget() : nullptr;
    return qobject_cast<const QAbstractItemView*>(around);
}

} // namespace

ScreenKeyboard::ScreenKeyboard(QObject* parent)
    : QObject(parent)
{
    const int index = names.indexOf(IniFile(platform::inHome(lookFile)).settings().value(comesKey).toString());
    m_comes = index < 0 ? Comes::OnTouch : Comes(index);
    qApp->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, &ScreenKeyboard::onFocus);
    connect(QGuiApplication::inputMethod(), &QInputMethod::visibleChanged, this, [this] {
        if (!isAllowed())
            hide();
    });
}

ScreenKeyboard::~ScreenKeyboard()
{
    delete m_panel;
}

void ScreenKeyboard::choose(Comes comes)
{
    hide();
    m_comes = comes;
    IniFile file(platform::inHome(lookFile));
    file.settings().setValue(comesKey, names.value(int(comes)));
    file.commit();
}

bool ScreenKeyboard::isAllowed() const
{
    return m_comes != Comes::Never && !QGuiApplication::inputMethod()->isVisible();
}

/// Only what the system sent counts: the keys of the panel are none of them.
bool ScreenKeyboard::eventFilter(QObject* object, QEvent* event)
{
    switch (event->type()) {
    case QEvent::TouchBegin:
        m_isFinger = true;
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
        onPointer(object, *static_cast<QMouseEvent*>(event));
        break;
    case QEvent::KeyPress:
        if (!event->spontaneous() || m_comes == Comes::Always)
            break;
        m_isFinger = false;
        hide();
        break;
    case QEvent::Move:
    case QEvent::Resize:
        if (m_panel && m_field && (object == m_field || object == m_field->window()))
            QTimer::singleShot(0, this, &ScreenKeyboard::place);
        break;
    default:
        break;
    }
    return false;
}

void ScreenKeyboard::onPointer(QObject* object, const QMouseEvent& event)
{
    auto* touched = qobject_cast<QWidget*>(object);
    if (!touched || (m_panel && (touched == m_panel || m_panel->isAncestorOf(touched))))
        return;
    m_isFinger = event.source() != Qt::MouseEventNotSynthesized;
    const QPointer<QWidget> field = fieldAt(touched);
    if (!field || event.type() != QEvent::MouseButtonRelease || (!m_isFinger && m_comes != Comes::Always))
        return;
    QTimer::singleShot(0, this, [this, field] {
        if (field && field->hasFocus())
            offer(field);
    });
}

/// Within the panel's use the focus goes on by its own key; a page that opens with a field waits for the finger.
void ScreenKeyboard::onFocus(QWidget* old, QWidget* now)
{
    const bool goesOn = m_panel && old == m_field;
    if (isTyped(now) && (m_comes == Comes::Always || (m_isFinger && (goesOn || isCell(now)))))
        offer(now);
    else
        hide();
}

void ScreenKeyboard::offer(QWidget* field)
{
    if (!isAllowed())
        return;
    const KeyPage page = wantsNumbers(*field) ? KeyPage::Numbers : KeyPage::Letters;
    const bool isThere = m_panel && m_panel->parentWidget() == field->window() &&
                         (m_panel->page() == KeyPage::Numbers) == (page == KeyPage::Numbers);
    if (!isThere) {
        hide();
        m_panel = new KeyPanel(page, field->window());
        connect(m_panel, &KeyPanel::pressed, this, &ScreenKeyboard::type);
        connect(m_panel, &KeyPanel::hideWanted, this, &ScreenKeyboard::hide);
    }
    m_field = field;
    place();
    m_panel->show();
}

void ScreenKeyboard::place()
{
    if (m_panel && m_field)
        m_panel->leaveFree(placeOf(*m_field), m_field->screen()->availableGeometry());
}

/// The panel may be in the middle of a key of its own.
void ScreenKeyboard::hide()
{
    if (!m_panel)
        return;
    m_panel->hide();
    m_panel->deleteLater();
    m_panel.clear();
    m_field.clear();
}

void ScreenKeyboard::type(int key, const QString& text)
{
    const QPointer<QWidget> field = QApplication::focusWidget();
    if (!field)
        return;
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(field, &press);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    if (field)
        QCoreApplication::sendEvent(field, &release);
}
