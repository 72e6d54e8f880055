#pragma once

#include "common/AuditChange.h"
#include "dialogs/cameras/CameraAccess.h"

#include <QAbstractTableModel>

/// The list of cameras as somebody edits it: what is configured, with what shall be added, changed and removed. Nothing
/// is applied before apply(). GUI thread.
class CameraDraft : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Key, Type, State, Format, Stations, Note, columns };
    enum class Mark { Kept, Added, Changed, Removed };

    struct Row
    {
        CameraEntry entry;
        Mark mark = Mark::Kept;
        CameraEntry before; ///< as it was configured when it was first edited; of no meaning for an added one
        CameraStatus status;
    };

    /// `cameras` outlives the draft.
    explicit CameraDraft(CameraAccess& cameras, QObject* parent = nullptr);

    /// Gives up what was edited.
    void reset();
    /// Takes over how the cameras do now; rows whose camera is gone go, and new cameras come.
    void refresh();

    const Row& row(int index) const { return m_rows[index]; }
    /// The row of a key; -1 when there is none.
    int find(const QString& key) const;
    QStringList keys() const;
    void add(const CameraEntry& entry);
    void change(int index, const CameraEntry& entry);
    /// An added camera goes at once; another is marked, or no longer.
    void toggleRemoved(int index);

    bool isEdited() const;
    /// What keeps the draft from being applied, in the operator's language; empty when nothing does.
    QString problem() const;
    /// Stations whose camera is to be removed, in the operator's language; empty when there is none.
    QString orphans() const;

    /// How many cameras there would be.
    int count() const;

    /// Applies all or nothing; the changes, or why it could not be done.
    bool apply(AuditChanges* changes, QString* error);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    Row configured(const QString& key) const;
    QString text(const Row& row, int column) const;
    QString note(const Row& row) const;
    static CameraEntry edits(const Row& row);
    AuditChanges audit() const;

    CameraAccess& m_cameras;
    QVector<Row> m_rows;
};
