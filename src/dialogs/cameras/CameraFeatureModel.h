#pragma once

#include <valvecell/ICameraFeatures.h>

#include <QAbstractItemModel>

/// The features of a camera, grouped by their category in the camera's own order. What somebody types is asked for by
/// writeWanted(); the value that is shown stays the camera's. GUI thread.
class CameraFeatureModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column { Name, Value, Range, columns };
    enum Role { FilterRole = Qt::UserRole }; ///< a text with all that a filter looks at

    explicit CameraFeatureModel(QObject* parent = nullptr);

    /// Takes over what the camera said. Features that stay keep their rows, so that an open field stays, too.
    void setFeatures(const QVector<CameraFeature>& features);
    /// The feature of a row; null for a category.
    const CameraFeature* feature(const QModelIndex& index) const;
    /// What is said of a feature beside its value: what went wrong, why it is locked, what it is; with its name.
    QString note(const QModelIndex& index) const;
    bool hasError(const QModelIndex& index) const;

    /// The writing of a feature has ended; `error` is empty when the camera took the value.
    void finishWriting(const QString& name, const QString& error);

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    /// `value` has the type and range of the feature; none for a command.
    void writeWanted(const CameraFeature& feature, const QVariant& value);

private:
    struct Row
    {
        CameraFeature feature;
        QString writing; ///< the value on its way to the camera, as it was typed
        QString error;   ///< of the last writing
    };
    struct Group
    {
        QString name;
        QVector<Row> rows;
    };

    static QVector<Group> grouped(const QVector<CameraFeature>& features);
    bool hasRowsOf(const QVector<Group>& groups) const;
    void update(const QVector<Group>& groups);
    const Row* row(const QModelIndex& index) const;
    void touch(int group, int row);
    QString groupName(int group) const;
    QString text(const Row& row, int column) const;
    static QString valueText(const Row& row);
    static QString rangeText(const CameraFeature& feature);
    static QVariant typed(const CameraFeature& feature, const QVariant& value, QString* problem);

    QVector<Group> m_groups;
};
