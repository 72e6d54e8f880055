#pragma once

#include "common/Background.h"

#include <QAbstractTableModel>
#include <QCache>
#include <QImage>
#include <QSet>
#include <QStyledItemDelegate>

class PartTableModel;
struct PartRow;

/// The same parts as small pictures, so many abreast, from the left to the right. A picture is read, scaled, when it
/// comes into sight. GUI thread.
class PartPictures : public QAbstractTableModel
{
    Q_OBJECT

public:
    static constexpr int pictureWidth = 192;
    static constexpr int pictureHeight = 144;

    explicit PartPictures(PartTableModel& parts, QObject* parent = nullptr);

    void setHome(const QString& home);
    void setAbreast(int columns);

    int partAt(const QModelIndex& index) const;
    QModelIndex placeOf(int part) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    /// Qt::DecorationRole: a QImage, null until it was read or when there is none; Qt::UserRole: a PartOutcome.
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    struct Small
    {
        QImage image;
        bool there = false; ///< a file of that name
    };
    /// Null until it was read.
    const Small* wanted(const PartRow& part, int at) const;
    QString captionOf(const PartRow& part) const;

    PartTableModel& m_parts;
    QString m_home;
    int m_abreast = 1;
    mutable QCache<qint64, Small> m_known; ///< by the part's number
    mutable QSet<qint64> m_requested;
    int m_number = 0; ///< of the home
    mutable Background m_reading;
};

/// Paints such a picture with its caption and the colour of its outcome.
class PartPictureDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    static QSize sizeFor(const QWidget* view);
};
