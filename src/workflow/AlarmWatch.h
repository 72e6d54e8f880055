#pragma once

#include "common/Background.h"

#include <QHash>
#include <QObject>
#include <QStringList>

class AlarmBook;
class CellRecords;
class ICoreCtrl;
class Scheduler;
class ISerialPort;
class ksGlobalConfig;
class ksSysConfig;

namespace SystemLog {
class ksLogDB;
}

/// Looks after what the cell stands on (its serial line, the cameras of its stations, its disk and databases) and keeps
/// the alarms accordingly. Modules that report nothing of their state raise none. GUI thread; nothing waits.
class AlarmWatch : public QObject
{
    Q_OBJECT

public:
    /// A PLC that sends nothing for longer counts as silent.
    static constexpr int silenceSeconds = 5;

    /// All outlive the watch.
    AlarmWatch(const ksGlobalConfig& config, const ksSysConfig& settings, AlarmBook& book, QObject* parent = nullptr);

    // What is watched; null for nothing. All outlive the watch.
    void setPort(ISerialPort* port) { m_port = port; }
    void setCameras(ICoreCtrl* cameras) { m_cameras = cameras; }
    void setLog(const SystemLog::ksLogDB* log) { m_log = log; }
    void setRecords(const CellRecords* records) { m_records = records; }

    /// To be called once, before anybody writes: raises an alarm for every file of the set-up that does not parse, the
    /// engine's solutions and models included; later, where threads may read them. `home`: without a separator at its
    /// end.
    void checkFiles(const QString& home, const Scheduler& scheduler);

public slots:
    /// The PLC sent something.
    void heard() { m_silent = 0; }
    /// To be called about once a second.
    void check();
    /// Likewise; `unasked`: the images since then that no trigger waited for, by camera.
    void checkFlood(const QHash<QString, int>& unasked);

private:
    void checkPort();
    void checkSilence(bool portOpen);
    void checkCameras();
    void checkCameraKeys(const QStringList& present);
    void checkLog();
    void checkRecords();
    void checkSetUp();
    void checkPresence();

    const ksGlobalConfig& m_config;
    const ksSysConfig& m_settings;
    AlarmBook& m_book;
    ISerialPort* m_port = nullptr;
    ICoreCtrl* m_cameras = nullptr;
    const SystemLog::ksLogDB* m_log = nullptr;
    const CellRecords* m_records = nullptr;
    QStringList m_watched; ///< cameras that were checked the last time
    QStringList m_flooding;
    QString m_lostPort; ///< as configured, of the alarm that lasts
    int m_checks = 0;
    int m_silent = 0; ///< seconds
    Background m_reading{Background::AtEnd::Wait};
};
