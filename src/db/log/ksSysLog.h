#pragma once

#include "config/ks_singleton_base.h"
#include "db/log/ksLogDB.h"

namespace SystemLog {

/// The one instance of the system log for the whole process; see ks_singleton_base.
template <typename T>
class ks_singleton_sys : public ks_singleton_base<T>
{
};

/// The system log of the process: once instance() was called, every LogLine goes to "dbLog.db" in the working
/// directory of that moment.
class ksSysLog : public ks_singleton_sys<ksSysLog>
{
public:
    ksSysLog();

    ksLogDB& database() { return m_database; }

    /// Writes again after stop(), to the same file; while it writes, nothing.
    void start();

    /// Ends writing, at the latest when the application object goes; later lines go nowhere.
    void stop();

private:
    ksLogDB m_database;
};

/// While it lives, warnings and errors of the debug stream, of the program and of its modules alike, are lines of the
/// system log too; whoever handled the stream before goes on handling it. One at a time; made and destroyed on the GUI
/// thread, lines may come from any.
class WarningForward
{
public:
    WarningForward();
    ~WarningForward();
    WarningForward(const WarningForward&) = delete;
    WarningForward& operator=(const WarningForward&) = delete;
};

} // namespace SystemLog
