#include "shell/ShellButton.h"

#include "common/LookColors.h"

#include <QAction>
#include <QMenu>
#include <QPainter>
#include <QStyle>

ShellButton::ShellButton(QAction* action, QWidget* parent)
    : QToolButton(parent)
{
    setObjectName(action->objectName() + QLatin1String("Button"));
    setDefaultAction(action);
    setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    setIconSize({24, 24});
    setFocusPolicy(Qt::TabFocus);
    setAutoRaise(true);
    if (action->menu())
        setPopupMode(QToolButton::InstantPopup);
    connect(action, &QAction::changed, this, &ShellButton::follow);
    follow();
}

/// The keys stand in the tip, after the reason why the action is locked, where it is.
void ShellButton::follow()
{
    const QAction* action = defaultAction();
    QStringList lines{action->text()};
    if (!action->shortcut().isEmpty())
        lines[0] += QStringLiteral(" (%1)").arg(action->shortcut().toString(QKeySequence::NativeText));
    const QString why = action->property("lockReason").toString();
    if (action->property("locked").toBool() && !why.isEmpty())
        lines << why;
    setToolTip(lines.join(QLatin1Char('\n')));
    setAccessibleName(action->text());
    updateGeometry();
}

void ShellButton::mark(QToolButton* button, bool current)
{
    if (button->property("current") == QVariant(current))
        return;
    button->setProperty("current", current);
    button->style()->unpolish(button);
    button->style()->polish(button);
    button->update();
}

/// Room for a finger and for the text, in every language.
QSize ShellButton::sizeHint() const
{
    ensurePolished();
    const int text = fontMetrics().horizontalAdvance(this->text());
    return {qMax(64, text + 16), iconSize().height() + fontMetrics().height() + 14};
}

QSize ShellButton::minimumSizeHint() const
{
    return {sizeHint().width(), iconSize().height() + fontMetrics().height() + 4};
}

void ShellButton::paintEvent(QPaintEvent* event)
{
    QToolButton::paintEvent(event);
    const QString keys = defaultAction()->shortcut().toString(QKeySequence::PortableText);
    if (keys.isEmpty())
        return;
    QPainter painter(this);
    QFont small = font();
    small.setPixelSize(11);
    painter.setFont(small);
    painter.setPen(lookColors().faint);
    painter.drawText(rect().adjusted(6, 4, -6, -4), Qt::AlignTop | Qt::AlignRight, keys.section(QLatin1Char('+'), -1));
}
