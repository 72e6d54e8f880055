#pragma once

#include "common/AuditChange.h"
#include "dialogs/cameras/CameraAccess.h"

#include <QDialog>
#include <QTimer>

#include <memory>

class CameraDraft;
class QCameraEditUI;

namespace Ui {
class QCameraManagerUI;
}

/// The camera manager: which cameras there are, how they do and which station uses them. The list shows how the
/// cameras do once a second; nothing is changed before OK or Apply. GUI thread.
class QCameraManagerUI : public QDialog
{
    Q_OBJECT

public:
    /// Both outlive the dialog.
    QCameraManagerUI(ICoreCtrl& core, const ksGlobalConfig& config, QWidget* parent = nullptr);
    ~QCameraManagerUI() override;

signals:
    /// Cameras were changed and stored; names as CameraAudit gives them.
    void camerasApplied(const AuditChanges& changes);
    /// The settings and the live picture of a configured camera are to be shown.
    void settingsWanted(const QString& cameraKey);

public slots:
    /// OK: applies, and closes when all was stored.
    void accept() override;
    /// Stores what was edited, all of it or nothing; the dialog says what keeps it from that.
    void apply();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    enum class After { Stay, Close };

    void connectAll();
    void load();
    void judge();
    void showChosen();
    int chosen() const;
    void beginEdit();
    void add();
    void modify();
    void removeOrKeep();
    void openSettings();
    QString keyProblem(const QString& key) const;
    void submit(After after);
    void store(After after);

    std::unique_ptr<Ui::QCameraManagerUI> m_ui;
    CameraAccess m_cameras;
    CameraDraft* m_draft;
    QCameraEditUI* m_edit;
    QTimer m_tick;
    QString m_failure; ///< of the last storing, shown until something is edited
};
