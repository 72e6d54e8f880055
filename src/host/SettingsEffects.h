#pragma once

#include "common/AuditChange.h"

#include <QObject>

class CellRecords;
class ISerialPort;
class ksSysConfig;

/// Lets settings that were changed act at once, while production runs: the serial line, the disk cleaners, the
/// language. All others are read each time that they are needed. GUI thread; nothing waits.
class SettingsEffects : public QObject
{
    Q_OBJECT

public:
    /// `settings` outlive the effects.
    explicit SettingsEffects(const ksSysConfig& settings, QObject* parent = nullptr);

    /// Each may be null, and outlives its use: set null before it goes.
    void setPort(ISerialPort* port) { m_port = port; }
    void setRecords(CellRecords* records) { m_records = records; }

public slots:
    /// Settings hold new values; `changes` name the keys.
    void apply(const AuditChanges& changes);

signals:
    void sgChangeLanguage(const QString& language);

private:
    void reopenPort();

    const ksSysConfig& m_settings;
    ISerialPort* m_port = nullptr;
    CellRecords* m_records = nullptr;
};
