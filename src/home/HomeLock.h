#pragma once

#include <QLockFile>

/// One process at a time has a home: what it holds while it runs. Main thread.
class HomeLock
{
public:
    explicit HomeLock(const QString& home);

    /// Takes the home for this process; false while another has it. The lock of a process that is no more does not
    /// count, nor does a file that a power failure kept from becoming one.
    bool take();

    struct Owner
    {
        qint64 process = 0;
        QString program;
        QString machine;
    };
    /// Who has it.
    Owner owner() const;

private:
    const QString m_path;
    QLockFile m_lock;
};
