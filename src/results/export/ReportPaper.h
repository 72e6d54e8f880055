#pragma once

#include <QPainter>
#include <QPair>
#include <QStringList>
#include <QVector>

#include <functional>
#include <memory>

class QPagedPaintDevice;

/// Sheets of A4 that fill from top to bottom, with a line of the report's name above and "1 / 3" below. All lengths in
/// tenths of a millimetre, whatever the device. One thread, which may be any.
class ReportPaper
{
public:
    static constexpr double width = 1800; ///< between the margins

    /// `pages`: how many there will be, for the numbers.
    ReportPaper(QPagedPaintDevice* device, QString head, QString foot, int pages);
    ~ReportPaper();

    int pages() const { return m_page; }
    /// A new sheet unless there is so much room; true when it took one.
    bool need(double height);
    void newPage();
    void skip(double height) { m_y += height; }

    enum Style { Normal, Small, Faint, Strong, Title };
    void text(const QString& text, Style style = Normal);
    /// A section, with at least so much room for what follows.
    void heading(const QString& text, double follows);

    struct Column
    {
        QString title;
        double share = 1; ///< of the width
        bool right = false;
    };
    /// Cells wrap; the head comes again on each sheet. `strong`: the last row is a sum.
    void table(const QVector<Column>& columns, const QVector<QStringList>& rows, bool strong = false);
    /// What paints itself into a rectangle.
    void figure(double height, const std::function<void(QPainter&, const QRectF&)>& paint);
    /// Lines to sign on, side by side, on one sheet with their captions.
    void signatures(const QStringList& captions);
    /// A picture and the title beside it.
    void title(const QImage& logo, const QString& title, const QStringList& lines);

    static QFont font(Style style);

private:
    void edges();
    double heightOf(const QString& text, double width, Style style) const;
    double row(const QVector<Column>& columns, const QStringList& cells, Style style, bool shaded);

    QPagedPaintDevice* m_device;
    const QString m_head;
    const QString m_foot;
    const int m_pages;
    std::unique_ptr<QPainter> m_painter;
    int m_page = 1;
    double m_y = 0;
};
