#pragma once

#include <QLockFile>

/// One process at a time has a home: what it holds while it runs. Main thread.
class HomeLock
{
public:
    HomeLock();

    /// Takes the home for this process; false while another has it. The lock of a process that is no more does not
    /// count, nor does a file that a power failure kept from becoming one.
    bool take();

    /// Who has it, on the error stream, and for a while on the screen: who starts the program by its icon sees no
    /// stream. An unattended program shows nothing.
    void reportInUse() const;

private:
    const QString m_path;
    QLockFile m_lock;
};
