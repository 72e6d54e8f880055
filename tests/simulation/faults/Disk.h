#pragma once

#include "Plan.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Simulation {

/// The disk below one folder, as a drive and its file system have it: what the process writes is on the disk only when
/// it was flushed. The calls of the process to the system come here (see Syscalls.cpp), those of the libraries too, so
/// nothing that keeps a file escapes. One thread.
class Disk
{
public:
    enum Fault { None, NoSpace, NoWriting, BadSectors };

    struct File
    {
        struct Write
        {
            qint64 offset = 0;
            std::string bytes;
            bool truncates = false; ///< to `offset`
        };
        std::string flushed;
        std::vector<Write> waiting; ///< since it was flushed
        bool kept = true;           ///< false: shared memory, which no power cut leaves
    };
    using FilePtr = std::shared_ptr<File>;

    static Disk& instance();

    /// From now on the disk is what lies below `folder`, which is empty. Times of files come from `clock`, milliseconds
    /// since the epoch.
    void insert(const std::string& folder, std::function<qint64()> clock);
    void remove();
    void setFault(Fault fault) { m_fault = fault; }
    Fault fault() const { return m_fault; }

    /// What a power cut at this moment may leave: the changes of names up to some moment since the last flush, and of
    /// what was written to each file since its flush any part. The running system still sees everything.
    struct Left
    {
        std::set<std::string> folders;
        std::map<std::string, std::string> files;
    };
    Left afterPowerCut(Random& random) const;
    /// Makes the disk so.
    void restore(const Left& left);

    /// Paths of the files that were deleted since the last call.
    std::vector<std::string> takeDeleted() { return std::exchange(m_deleted, {}); }

    // The system's calls report here.
    bool holds(const char* path) const;
    FilePtr opened(const std::string& path, bool truncates);
    /// A file gets a name, its first or another.
    void named(const FilePtr& file, const std::string& path);
    void wrote(File& file, qint64 offset, const char* bytes, std::size_t size);
    void truncated(File& file, qint64 size);
    void flush(File& file);
    void madeFolder(const std::string& path);
    void renamed(const std::string& from, const std::string& to);
    void unlinked(const std::string& path);
    qint64 madeAt(const std::string& path) const;

private:
    struct Names
    {
        std::map<std::string, FilePtr> files;
        std::set<std::string> folders;
    };
    using Change = std::function<void(Names&)>;

    void change(Change change);

    std::string m_root; ///< empty: there is none
    std::function<qint64()> m_clock;
    Fault m_fault = None;
    Names m_now;
    Names m_flushed;
    std::vector<Change> m_changes; ///< of names, since the last flush of any file
    std::map<std::string, qint64> m_made;
    std::vector<std::string> m_deleted;
};

} // namespace Simulation
