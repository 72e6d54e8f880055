#pragma once

#include "dialogs/settings/SettingsStore.h"

#include <QDialog>

#include <memory>

class AccessPolicy;
class CellLimits;
class ISerialPorts;
class PortChooser;
class SettingsForm;
class ShiftConfig;

namespace Ui {
class QSystemSettingUI;
}

/// The system settings. The form shows the settings at each showing; nothing is changed before OK or Apply, and then
/// only what was edited here: what others changed meanwhile stays. GUI thread.
class QSystemSettingUI : public QDialog
{
    Q_OBJECT

public:
    /// All outlive the dialog.
    QSystemSettingUI(ksSysConfig& system, ksGlobalConfig& global, AccessPolicy& access, CellLimits& limits,
                     ShiftConfig& shifts, QWidget* parent = nullptr);
    ~QSystemSettingUI() override;

    /// What can be chosen now; may be set anew at any time. A chosen name that is gone stays, marked as missing.
    void setCameras(const QStringList& keys);
    void setSolutions(const QStringList& names);
    /// Folder names of the languages, each with the name to show.
    void setLanguages(const QMap<QString, QString>& captions);

    /// Which ports there are and which names a line may have; outlives the dialog, null for anything goes.
    void setPorts(const ISerialPorts* ports);

    /// Hides what belongs to station 2, marked by the property "secondStation"; its settings stay as they are.
    void setOneStation(bool one);

    /// How the disk of the images stands: its free MiB, -1 when not known, and whether images are kept for a day only
    /// since space was low once. The field says so when the space to keep free shortens the keeping.
    void setImageDisk(qint64 freeMiB, bool keptOneDay);

signals:
    /// Settings were changed and stored. Names are the keys of the files.
    void settingsApplied(const AuditChanges& changes);

public slots:
    /// OK: applies, and closes when all was stored.
    void accept() override;
    /// Stores what was edited; the dialog shows what keeps it from that.
    void apply();

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    /// What becomes of the dialog once all is stored.
    enum class After { Stay, Close };

    void connectAll();
    void load();
    void judge();
    QString problem() const;
    /// What was typed or chosen since the settings were shown.
    SettingsMap edited() const;
    void submit(After after);
    /// Lets the operator decide between the files and the form; nothing happens until then.
    void askAboutFiles(const QStringList& foreign, After after);
    /// Asks before the other kind of calibration comes into force where a station is not calibrated for it.
    void askAboutCalibration(After after);
    /// What the settings become: what was edited, and else what the program uses.
    SettingsMap wanted() const;
    void store(After after);
    /// Gives up what was edited, and takes over what the files hold.
    void takeFiles();
    QString portProblem() const;
    QString sameChoiceProblem() const;
    /// Of the shifts and their reports.
    QString shiftProblem() const;
    QString plantProblem() const;
    void nameReports();
    void chooseReportFolder();
    /// What the space to keep free does to the days of keeping; empty when nothing.
    QString keepingWarning() const;
    /// What does not keep the settings from being stored.
    QString warning();

    std::unique_ptr<Ui::QSystemSettingUI> m_ui;
    SettingsStore m_store;
    SettingsForm* m_form = nullptr;
    PortChooser* m_chooser = nullptr;
    const ISerialPorts* m_ports = nullptr;
    SettingsMap m_shown; ///< the settings as the form got them
    bool m_oneStation = false;
    qint64 m_freeMiB = -1;
    bool m_keptOneDay = false;
};
