#include "dialogs/help/GuideView.h"

#include <QAbstractTextDocumentLayout>
#include <QDesktopServices>
#include <QFileInfo>
#include <QImage>
#include <QResizeEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextTable>

#include <algorithm>

namespace {

constexpr qreal pictureDpi = 96;
constexpr qreal cellPadding = 6;
constexpr qreal lineHeight = 140; // percent

QTextTableFormat tableLook(const QPalette& palette)
{
    QTextTableFormat look;
    look.setBorder(1);
    look.setBorderCollapse(true);
    look.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    look.setBorderBrush(palette.mid());
    look.setCellPadding(cellPadding);
    look.setCellSpacing(0);
    look.setTopMargin(cellPadding);
    look.setBottomMargin(2 * cellPadding);
    look.setHeaderRowCount(1);
    return look;
}

} // namespace

GuideView::GuideView(QWidget* parent)
    : QTextBrowser(parent)
{
    setOpenLinks(false);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // or its coming would make the pictures too wide
    setUndoRedoEnabled(false);
    document()->setDocumentMargin(20);
    connect(this, &QTextBrowser::sourceChanged, this, &GuideView::prepare);
    connect(this, &QTextBrowser::anchorClicked, this, &GuideView::follow);
}

bool GuideView::open(const QString& path)
{
    const QFileInfo file(path);
    if (!file.isFile())
        return false;
    setSource(QUrl::fromLocalFile(file.absoluteFilePath()), QTextDocument::MarkdownResource);
    return true;
}

/// Another guide is shown here; all else is the system's.
void GuideView::follow(const QUrl& link)
{
    if (!link.scheme().isEmpty() && !link.isLocalFile())
        QDesktopServices::openUrl(link);
    else
        open(source().resolved(link).toLocalFile());
}

void GuideView::prepare()
{
    m_found.clear();
    m_current = -1;
    QTextCursor whole(document());
    whole.beginEditBlock(); // one layout for all
    styleBlocks();
    styleTables();
    whole.endEditBlock();
    readPage();
    setExtraSelections({});
    emit pageShown();
}

void GuideView::styleBlocks()
{
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        QTextBlockFormat format = block.blockFormat();
        format.setLineHeight(lineHeight, QTextBlockFormat::ProportionalHeight);
        if (format.headingLevel() > 1)
            format.setTopMargin(fontMetrics().height());
        QTextCursor(block).setBlockFormat(format);
    }
}

void GuideView::styleTables()
{
    const QList<QTextFrame*> frames = document()->rootFrame()->childFrames();
    for (QTextFrame* frame : frames) {
        auto* table = qobject_cast<QTextTable*>(frame);
        if (!table)
            continue;
        QTextTableFormat look = tableLook(palette());
        look.setColumns(table->columns());
        table->setFormat(look);
        for (int column = 0; column < table->columns(); ++column) {
            QTextTableCell cell = table->cellAt(0, column);
            QTextCharFormat format = cell.format();
            format.setBackground(palette().alternateBase());
            cell.setFormat(format);
        }
    }
}

/// A picture that is wider than the page would bring a scroll bar below.
QVariant GuideView::loadResource(int type, const QUrl& url)
{
    const QVariant loaded = QTextBrowser::loadResource(type, url);
    if (type != QTextDocument::ImageResource)
        return loaded;
    QImage picture = QImage::fromData(loaded.toByteArray());
    const int room = viewport()->width() - 2 * qRound(document()->documentMargin());
    const qreal zoom = logicalDpiY() / pictureDpi; // the layout enlarges pictures like letters
    if (room <= 0 || picture.width() * zoom <= room)
        return picture;
    picture = picture.scaledToWidth(qRound(room * devicePixelRatioF()), Qt::SmoothTransformation);
    picture.setDevicePixelRatio(devicePixelRatioF() * zoom);
    return picture;
}

void GuideView::fitPictures()
{
    for (const QUrl& picture : m_pictures)
        document()->addResource(QTextDocument::ImageResource, picture,
                                loadResource(QTextDocument::ImageResource, picture));
    document()->markContentsDirty(0, document()->characterCount());
}

void GuideView::readPage()
{
    m_headings.clear();
    m_pictures.clear();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        if (const int level = block.blockFormat().headingLevel())
            m_headings.append({block.text(), level, block.position()});
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextImageFormat picture = it.fragment().charFormat().toImageFormat();
            if (picture.isValid())
                m_pictures.append(QUrl(picture.name()));
        }
    }
}

void GuideView::goTo(int position)
{
    const QTextBlock block = document()->findBlock(position);
    const QRectF place = document()->documentLayout()->blockBoundingRect(block);
    verticalScrollBar()->setValue(qRound(place.top()) - fontMetrics().height() / 2);
}

int GuideView::headingAtTop() const
{
    const int top = cursorForPosition(QPoint(0, 2 * fontMetrics().height())).position();
    int at = -1;
    while (at + 1 < m_headings.size() && m_headings[at + 1].position <= top)
        ++at;
    return at;
}

void GuideView::search(const QString& text)
{
    m_found.clear();
    m_current = -1;
    if (!text.isEmpty()) {
        for (QTextCursor hit = document()->find(text); !hit.isNull(); hit = document()->find(text, hit))
            m_found.append(hit);
    }
    const int top = cursorForPosition(QPoint()).position();
    const auto below = [top](const QTextCursor& hit) { return hit.selectionStart() >= top; };
    const auto first = std::find_if(m_found.begin(), m_found.end(), below);
    if (first != m_found.end())
        m_current = static_cast<int>(first - m_found.begin());
    else if (!m_found.isEmpty())
        m_current = 0;
    showMarks();
}

void GuideView::step(int by)
{
    if (m_found.isEmpty())
        return;
    m_current = (m_current + by + m_found.size()) % m_found.size();
    showMarks();
}

void GuideView::showMarks()
{
    QList<ExtraSelection> marks;
    for (int i = 0; i < m_found.size(); ++i) {
        ExtraSelection mark;
        mark.cursor = m_found[i];
        const bool here = i == m_current;
        mark.format.setBackground(here ? palette().highlight() : QBrush(QColor(0xffe08a)));
        mark.format.setForeground(here ? palette().highlightedText() : QBrush(Qt::black));
        marks.append(mark);
    }
    setExtraSelections(marks);
    if (m_current < 0)
        return;
    QTextCursor start = m_found[m_current];
    start.clearSelection();
    setTextCursor(start); // which lets the scroll bar reach as far: a long guide is laid out bit by bit
    const QRect place = cursorRect(m_found[m_current]);
    if (!viewport()->rect().contains(place))
        verticalScrollBar()->setValue(verticalScrollBar()->value() + place.top() - viewport()->height() / 3);
}

void GuideView::resizeEvent(QResizeEvent* event)
{
    QTextBrowser::resizeEvent(event);
    if (event->oldSize().width() != event->size().width())
        fitPictures();
}
