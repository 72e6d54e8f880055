#pragma once

#include "db/log/ksLogDB.h"
#include "db/log/ks_singleton_sys.h"

namespace SystemLog {

/// The system log of the process: once instance() was called, every LogLine goes to "dbLog.db" in the working
/// directory.
class ksSysLog : public ks_singleton_sys<ksSysLog>
{
public:
    ksSysLog();

    ksLogDB& database() { return m_database; }

    /// Ends writing, at the latest when the application object goes; later lines go nowhere.
    void stop();

private:
    ksLogDB m_database;
};

} // namespace SystemLog
