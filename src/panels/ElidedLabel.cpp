#include "panels/ElidedLabel.h"

#include <QAbstractTextDocumentLayout>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QTextCursor>
#include <QTextDocument>
#include <QToolTip>

QString ElidedLabel::shownText() const
{
    QStringList lines = text().split(QLatin1Char('\n'));
    for (QString& line : lines)
        line = fontMetrics().elidedText(line, Qt::ElideRight, contentsRect().width());
    return lines.join(QLatin1Char('\n'));
}

void ElidedLabel::paintRich(QPainter& painter) const
{
    QTextDocument document;
    document.setDefaultFont(font());
    document.setDocumentMargin(0);
    document.setHtml(text());
    const QRect room = contentsRect();
    if (document.idealWidth() > room.width()) {
        QTextCursor cursor(&document);
        cursor.movePosition(QTextCursor::NextCharacter);
        const QTextCharFormat format = cursor.charFormat();
        cursor.select(QTextCursor::Document);
        const QString whole = cursor.selectedText();
        cursor.insertText(QFontMetrics(format.font()).elidedText(whole, Qt::ElideRight, room.width()), format);
    }
    document.setTextWidth(room.width());
    QTextOption option(alignment());
    document.setDefaultTextOption(option);
    painter.translate(room.left(), room.top() + (room.height() - document.size().height()) / 2);
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette.setColor(QPalette::Text, palette().color(foregroundRole()));
    document.documentLayout()->draw(&painter, context);
}

bool ElidedLabel::event(QEvent* event)
{
    const bool isCut = isRich() ? QLabel::sizeHint().width() > width() : shownText() != text();
    if (event->type() != QEvent::ToolTip || !isCut)
        return QLabel::event(event);
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                       isRich() ? text() : text().toHtmlEscaped().replace('\n', "<br>"), this);
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    drawFrame(&painter);
    if (isRich())
        return paintRich(painter);
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(), isEnabled(), shownText(),
                          foregroundRole());
}
