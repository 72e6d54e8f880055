#pragma once

#include "common/AuditChange.h"
#include "config/ConfigVisitors.h"
#include "config/ForwardConfig.h"

#include <QMap>
#include <QStringList>
#include <QVariant>

class AccessPolicy;
class CellLimits;
class ShiftConfig;
class ksGlobalConfig;
class ksSysConfig;

/// The settings of all files by their keys, such as "COM/Baute" or "trigerFilter": texts, whole numbers and
/// switches. Which there are, the files' configurations say in visit().
using SettingsMap = QMap<QString, QVariant>;

/// Reads and stores what the system settings dialog edits. GUI thread.
class SettingsStore
{
public:
    /// All outlive the store.
    SettingsStore(ksSysConfig& system, ksGlobalConfig& global, AccessPolicy& access, CellLimits& limits,
                  ShiftConfig& shifts);

    /// The settings as the program uses them now.
    SettingsMap current() const;

    /// What may be typed for the whole numbers among them, by key.
    QMap<QString, SettingRange> ranges() const;

    /// What the files hold that the program does not know of, one sentence a file: somebody edited them since the
    /// program read or wrote them last. The run models are left aside: production changes them without storing them.
    QStringList foreignChanges() const;

    /// Why stations in use would answer no place, or wrong ones, once the settings switch to the other kind of
    /// calibration, a sentence a station; empty when they do not switch.
    QStringList calibrationDoubts(const SettingsMap& settings, bool oneStation) const;

    /// Gives the program these settings and writes the files. On failure the program keeps the old ones and `error`
    /// names file and reason.
    bool store(const SettingsMap& settings, QString* error);

    /// Whether reload() would find readable files.
    bool canReload() const;
    /// Takes over what the files hold, run models excepted.
    void reload();

    /// The keys with different values, in key order.
    static AuditChanges differences(const SettingsMap& before, const SettingsMap& after);

private:
    void assign(const SettingsMap& settings);
    bool saveSystem(QString* error);
    QString foreignSystemChange() const;
    QString foreignGlobalChange() const;

    ksSysConfig& m_system;
    ksGlobalConfig& m_global;
    AccessPolicy& m_access;
    CellLimits& m_limits;
    ShiftConfig& m_shifts;
    mutable ForwardConfig m_forward; ///< the forwarding reads the file itself
};
