#pragma once

#include "guided/library/ModelUse.h"

#include <QAbstractTableModel>
#include <QImage>
#include <QVector>

#include <array>

/// The models of the cell as a table: where each is taught, by which index the PLC names it, when it was seen last, its
/// yield and its last picture. GUI thread.
class LibraryTable : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Picture, Name, Taught1, Taught2, Index1, Index2, LastSeen, Yield, Columns };
    static constexpr int sortRole = Qt::UserRole; ///< what a column is sorted by

    struct Row
    {
        QString name;
        bool current = false;
        std::array<bool, 2> taught{};
        std::array<int, 2> index{}; ///< 0: the station has none
    };

    using QAbstractTableModel::QAbstractTableModel;

    void setRows(const QVector<Row>& rows);
    void setUses(const QHash<QString, ModelUse>& uses);
    void setPicture(const QString& model, const QImage& picture);
    void refreshTexts();

    const Row& row(int row) const { return m_rows[row]; }
    ModelUse use(int row) const { return m_uses.value(m_rows[row].name); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

signals:
    /// A row without its picture is on the screen.
    void pictureWanted(const QString& model, qint64 part) const;

private:
    QString text(const Row& row, int column) const;
    QVariant sorted(const Row& row, int column) const;
    QVariant thumbnail(const Row& row) const;

    QVector<Row> m_rows;
    QHash<QString, ModelUse> m_uses;
    QHash<QString, QImage> m_pictures;
};
