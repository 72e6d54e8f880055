#include "results/export/ReportPaper.h"

#include "common/LookColors.h"

#include <QPagedPaintDevice>

#include <cmath>

namespace {

constexpr double left = 150;
constexpr double top = 230;
constexpr double bottom = 2790;
constexpr double headAt = 130;
constexpr double footAt = 2830;
constexpr double padding = 14;
constexpr int wrapping = Qt::TextWordWrap | Qt::TextWrapAnywhere;
constexpr double endless = 100000;

const LookColors& paperInk()
{
    return lookColors(false);
}

QColor colorOf(ReportPaper::Style style)
{
    return style == ReportPaper::Faint ? paperInk().faint : paperInk().text;
}

} // namespace

QFont ReportPaper::font(Style style)
{
    QFont font;
    const int heights[] = {32, 27, 27, 32, 62};
    font.setPixelSize(heights[style]);
    font.setBold(style == Strong || style == Title);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

ReportPaper::ReportPaper(QPagedPaintDevice* device, QString head, QString foot, int pages)
    : m_device(device)
    , m_head(std::move(head))
    , m_foot(std::move(foot))
    , m_pages(pages)
    , m_painter(std::make_unique<QPainter>(device))
    , m_y(top)
{
    const double scale = device->logicalDpiX() / 254.0;
    m_painter->scale(scale, scale);
    m_painter->setRenderHint(QPainter::Antialiasing);
    edges();
}

ReportPaper::~ReportPaper() = default;

void ReportPaper::edges()
{
    m_painter->setFont(font(Faint));
    m_painter->setPen(paperInk().faint);
    const double line = QFontMetricsF(font(Faint), m_device).height() * 1.3;
    if (m_page > 1) {
        m_painter->drawText(QRectF(left, headAt, width, line), Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine,
                            m_head);
        m_painter->drawLine(QPointF(left, headAt + line), QPointF(left + width, headAt + line));
    } else {
        m_y = headAt;
    }
    m_painter->drawText(QRectF(left, footAt, width, line), Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, m_foot);
    m_painter->drawText(QRectF(left, footAt, width, line), Qt::AlignRight | Qt::AlignTop,
                        QStringLiteral("%1 / %2").arg(m_page).arg(m_pages));
}

void ReportPaper::newPage()
{
    m_device->newPage();
    ++m_page;
    m_y = top;
    edges();
}

bool ReportPaper::need(double height)
{
    if (m_y + height <= bottom || m_y <= top)
        return false;
    newPage();
    return true;
}

double ReportPaper::heightOf(const QString& text, double width, Style style) const
{
    const QFontMetricsF metrics(font(style), m_device);
    return std::ceil(
        qMax(metrics.height(), metrics.boundingRect(QRectF(0, 0, width, endless), wrapping, text).height()));
}

void ReportPaper::text(const QString& text, Style style)
{
    const double height = heightOf(text, width, style);
    need(height);
    m_painter->setFont(font(style));
    m_painter->setPen(colorOf(style));
    m_painter->drawText(QRectF(left, m_y, width, height + padding), wrapping, text);
    m_y += height + padding;
}

void ReportPaper::heading(const QString& text, double follows)
{
    constexpr double above = 34;
    constexpr double height = 46;
    need(above + height + padding + follows);
    m_y += m_y <= top ? 0 : above;
    QFont bold = font(Strong);
    bold.setPixelSize(36);
    m_painter->setFont(bold);
    m_painter->setPen(paperInk().accent);
    m_painter->drawText(QRectF(left, m_y, width, height), Qt::AlignLeft | Qt::AlignVCenter, text);
    m_y += height + padding;
}

double ReportPaper::row(const QVector<Column>& columns, const QStringList& cells, Style style, bool shaded)
{
    double height = 0;
    for (int i = 0; i < columns.size(); ++i)
        height = qMax(height, heightOf(cells.value(i), columns.at(i).share * width - 2 * padding, style));
    height += padding;
    if (shaded)
        m_painter->fillRect(QRectF(left, m_y, width, height), paperInk().window);
    m_painter->setFont(font(style));
    double x = left;
    for (int i = 0; i < columns.size(); ++i) {
        const double wide = columns.at(i).share * width;
        m_painter->setPen(colorOf(style));
        m_painter->drawText(QRectF(x + padding, m_y + padding / 2, wide - 2 * padding, height),
                            wrapping | (columns.at(i).right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignTop,
                            cells.value(i));
        x += wide;
    }
    m_y += height;
    m_painter->setPen(QPen(paperInk().border, 2));
    m_painter->drawLine(QPointF(left, m_y), QPointF(left + width, m_y));
    return height;
}

void ReportPaper::table(const QVector<Column>& columns, const QVector<QStringList>& rows, bool strong)
{
    QStringList titles;
    for (const Column& column : columns)
        titles << column.title;
    const double least = heightOf(titles.value(0), width, Strong) * 3;
    need(least);
    row(columns, titles, Strong, true);
    for (int i = 0; i < rows.size(); ++i) {
        const Style style = strong && i + 1 == rows.size() ? Strong : Small;
        double height = 0;
        for (int c = 0; c < columns.size(); ++c)
            height = qMax(height, heightOf(rows.at(i).value(c), columns.at(c).share * width - 2 * padding, style));
        if (need(height + padding))
            row(columns, titles, Strong, true);
        row(columns, rows.at(i), style, false);
    }
    m_y += padding;
}

void ReportPaper::figure(double height, const std::function<void(QPainter&, const QRectF&)>& paint)
{
    need(height);
    m_painter->save();
    m_painter->setFont(font(Small));
    paint(*m_painter, QRectF(left, m_y, width, height));
    m_painter->restore();
    m_y += height + padding;
}

void ReportPaper::signatures(const QStringList& captions)
{
    constexpr double room = 130;
    constexpr double gap = 60;
    const double wide = (width - gap * (captions.size() - 1)) / captions.size();
    double height = 0;
    for (const QString& caption : captions)
        height = qMax(height, heightOf(caption, wide, Small));
    need(room + height + padding);
    m_y += room;
    m_painter->setFont(font(Small));
    m_painter->setPen(QPen(paperInk().text, 2));
    for (int i = 0; i < captions.size(); ++i) {
        const double x = left + i * (wide + gap);
        m_painter->drawLine(QPointF(x, m_y), QPointF(x + wide, m_y));
        m_painter->drawText(QRectF(x, m_y + padding, wide, height + padding), wrapping, captions.at(i));
    }
    m_y += height + 2 * padding;
}

void ReportPaper::title(const QImage& logo, const QString& title, const QStringList& lines)
{
    constexpr double logoHeight = 170;
    constexpr double logoWidth = 420;
    double x = left;
    if (!logo.isNull()) {
        const QSizeF size = QSizeF(logo.size()).scaled(logoWidth, logoHeight, Qt::KeepAspectRatio);
        m_painter->setRenderHint(QPainter::SmoothPixmapTransform);
        m_painter->drawImage(QRectF(QPointF(left, m_y), size), logo);
        x += size.width() + 50;
    }
    const double begin = m_y;
    const double wide = left + width - x;
    for (int i = -1; i < lines.size(); ++i) {
        const Style style = i < 0 ? Title : i == 0 ? Strong : Faint;
        const QString& text = i < 0 ? title : lines.at(i);
        const double height = heightOf(text, wide, style);
        m_painter->setFont(font(style));
        m_painter->setPen(colorOf(style));
        m_painter->drawText(QRectF(x, m_y, wide, height + padding), wrapping, text);
        m_y += height + padding / 2;
    }
    m_y = qMax(m_y, logo.isNull() ? 0 : begin + logoHeight) + padding;
    m_painter->setPen(QPen(paperInk().accent, 5));
    m_painter->drawLine(QPointF(left, m_y), QPointF(left + width, m_y));
    m_y += padding;
}
