#pragma once

#include <QObject>

class AlarmBook;
class CellRecords;
class ICoreCtrl;
class ISerialPort;
class ksGlobalConfig;

namespace SystemLog {
class ksLogDB;
}

/// Looks after what the cell stands on (its serial line, the cameras of its stations, its disk and databases) and keeps
/// the alarms accordingly. Modules that report nothing of their state raise none. GUI thread; nothing waits.
class AlarmWatch : public QObject
{
    Q_OBJECT

public:
    /// Both outlive the watch.
    AlarmWatch(const ksGlobalConfig& config, AlarmBook& book, QObject* parent = nullptr);

    // What is watched; null for nothing. All outlive the watch.
    void setPort(ISerialPort* port) { m_port = port; }
    void setCameras(ICoreCtrl* cameras) { m_cameras = cameras; }
    void setLog(const SystemLog::ksLogDB* log) { m_log = log; }
    void setRecords(const CellRecords* records) { m_records = records; }

public slots:
    /// To be called about once a second.
    void check();

private:
    void checkPort();
    void checkCameras();
    void checkLog();
    void checkRecords();
    void checkSetUp();

    const ksGlobalConfig& m_config;
    AlarmBook& m_book;
    ISerialPort* m_port = nullptr;
    ICoreCtrl* m_cameras = nullptr;
    const SystemLog::ksLogDB* m_log = nullptr;
    const CellRecords* m_records = nullptr;
    QStringList m_watched; ///< cameras that were checked the last time
};
