#pragma once

#include "common/AuditChange.h"
#include "dialogs/cameras/CameraAccess.h"

#include <QDialog>
#include <QTimer>

#include <memory>

class LivePicture;

namespace Ui {
class QCameraSettingsUI;
}

/// One camera: what it is, how it does, what it sees, its settings, and all that it can do beyond them. Settings are
/// changed by OK or Apply, and then only those that were edited here; features of its own on their page, at once. The
/// picture comes by a way of its own, never through the stations, and is refused for the camera of a station while the
/// cell runs online. GUI thread.
class QCameraSettingsUI : public QDialog
{
    Q_OBJECT

public:
    /// Both outlive the dialog. The camera may go and come back while it is open.
    QCameraSettingsUI(ICoreCtrl& core, const ksGlobalConfig& config, QString cameraKey, QWidget* parent = nullptr);
    ~QCameraSettingsUI() override;

signals:
    /// Settings were changed and stored; names as CameraAudit gives them.
    void settingsApplied(const AuditChanges& changes);

public slots:
    /// OK: applies, and closes when all was stored.
    void accept() override;
    void apply();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void connectAll();
    void load();
    void showSettings();
    void tick();
    void showStatus();
    void showPages();
    void showPicture(const QImage& image);
    void judge();
    QString problem() const;
    QString liveProblem() const;
    QVariantMap edits() const;
    bool store();

    std::unique_ptr<Ui::QCameraSettingsUI> m_ui;
    CameraAccess m_cameras;
    const QString m_key;
    LivePicture* m_live;
    QVariantMap m_shown; ///< the settings as the form got them
    QTimer m_tick;
    QString m_failure; ///< of the last storing, shown until something is edited
};
