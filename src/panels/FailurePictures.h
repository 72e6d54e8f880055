#pragma once

#include "common/Background.h"
#include "results/data/PartFilter.h"

#include <QHash>
#include <QImage>
#include <QWidget>

/// The last parts of a station that were not found, as small pictures, the newest at the left. Pictures are read and
/// scaled on a thread. GUI thread.
class FailurePictures : public QWidget
{
    Q_OBJECT

public:
    explicit FailurePictures(QWidget* parent = nullptr);

    /// Below which the archived pictures lie.
    void setHome(const QString& home) { m_home = home; }
    /// The newest last; of those without a picture so far one is read.
    void setParts(const QVector<PartRow>& parts);
    /// The picture of a part at hand, so that its file need not have been written. Before setParts() with the part;
    /// again does nothing.
    void keepPicture(const PartRow& part, const QImage& picture);

    /// What is seen of them at the present size.
    int shown() const;
    /// Whether the part's picture was looked for and is gone.
    bool isGone(qint64 wall) const { return m_small.contains(wall) && m_small.value(wall).isNull(); }
    QRect cellOf(int place) const;

    QSize sizeHint() const override { return {300, 90}; }
    QSize minimumSizeHint() const override { return {100, 50}; }

signals:
    void partWanted(qint64 wall);
    /// A picture came.
    void loaded();

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QSize grid() const;
    const PartRow* partAt(const QPoint& position) const;
    void read(const PartRow& part, int attempts);
    void take(qint64 wall, const QImage& small);
    void paintCell(QPainter& painter, const QRect& cell, const PartRow& part) const;

    QString m_home;
    QVector<PartRow> m_parts;      ///< the newest first
    QHash<qint64, QImage> m_small; ///< by the part's time; null: there is none any more
    QVector<qint64> m_wanted;      ///< being read or scaled
    Background m_background;
};
