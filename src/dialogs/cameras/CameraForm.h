#pragma once

#include <valvecell/ICameraParameters.h>

#include <QWidget>

class FolderProbe;
class QGridLayout;
class QLabel;
class QPushButton;

/// The fields of a camera's settings, one for each parameter that its module describes, in their order. A field has the
/// parameter's name as its object name. GUI thread.
class CameraForm : public QWidget
{
    Q_OBJECT

public:
    explicit CameraForm(QWidget* parent = nullptr);

    /// Shows fields for these parameters. Fields that are there already keep what was typed, so that this is also the
    /// way to another language.
    void setParameters(const QVector<CameraParameter>& parameters);
    /// Fills the fields; what is not named gets its initial value, what has no field is left alone.
    void setValues(const QVariantMap& settings);
    /// Greys the settings that the camera has not, each with the reason beside it; they have no value then.
    void setMissing(const QMap<QString, QString>& reasons);
    /// What the fields hold, typed as the parameters say.
    QVariantMap values() const;
    /// The first thing that is wrong, in the operator's language; empty when all can be taken.
    QString problem() const;
    /// What can be taken of these settings, though it will hardly work: an image folder that does not exist (yet).
    QString warning(const QVariantMap& settings) const;

signals:
    /// Somebody typed or chose.
    void edited();
    /// More is known about what was typed.
    void warningChanged();

private:
    struct Row
    {
        CameraParameter parameter;
        QLabel* caption;
        QWidget* field;
        QLabel* missing;     ///< below the field: why the camera has no such setting; hidden when it has
        QLabel* unit;        ///< null for a folder, which has the next two
        QPushButton* browse; ///< null for others
        FolderProbe* probe;
    };

    static QVector<QWidget*> widgetsOf(const Row& row);
    static bool isMissing(const Row& row);
    bool showsSame(const QVector<CameraParameter>& parameters) const;
    void addRow(const CameraParameter& parameter);
    QWidget* makeField(const CameraParameter& parameter);
    void addFolderTools(Row& row);
    void label(Row& row);
    void orderTabs();
    void askFolder(const QString& name);

    QGridLayout* m_grid;
    QVector<Row> m_rows;
};
