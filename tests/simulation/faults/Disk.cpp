#include "Disk.h"

#include <QDir>
#include <QFile>

#include <cstring>

namespace Simulation {
namespace {

constexpr int sector = 512;

void applyTo(std::string& content, const Disk::File::Write& write)
{
    const auto offset = static_cast<std::size_t>(write.offset);
    if (write.truncates || content.size() < offset + write.bytes.size())
        content.resize(offset + write.bytes.size());
    content.replace(offset, write.bytes.size(), write.bytes);
}

/// All of it, none, the first part, or any of it, the last of them torn at a sector.
std::string contentLeft(const Disk::File& file, Random& random)
{
    std::string content = file.flushed;
    const int how = random.below(4);
    const int count = static_cast<int>(file.waiting.size());
    const int first = how == 2 ? random.below(count + 1) : count;
    for (int i = 0; i < first && how != 1; ++i) {
        Disk::File::Write write = file.waiting[static_cast<std::size_t>(i)];
        if (how == 3 && random.chance(40))
            continue;
        if (how >= 2 && i + 1 == first && !write.truncates)
            write.bytes.resize(std::min<std::size_t>(write.bytes.size(), sector * std::size_t(random.below(9))));
        applyTo(content, write);
    }
    return content;
}

template <typename Map>
void moveBelow(Map& map, const std::string& from, const std::string& to)
{
    Map moved;
    for (auto it = map.lower_bound(from + '/');
         it != map.end() && it->first.compare(0, from.size() + 1, from + '/') == 0;) {
        moved[to + it->first.substr(from.size())] = it->second;
        it = map.erase(it);
    }
    map.insert(moved.begin(), moved.end());
}

} // namespace

Disk& Disk::instance()
{
    static Disk disk;
    return disk;
}

void Disk::insert(const std::string& folder, std::function<qint64()> clock)
{
    *this = {};
    m_root = folder + '/';
    m_clock = std::move(clock);
}

void Disk::remove()
{
    *this = {};
}

bool Disk::holds(const char* path) const
{
    return !m_root.empty() && path && std::strncmp(path, m_root.c_str(), m_root.size()) == 0;
}

void Disk::change(Change change)
{
    change(m_now);
    m_changes.push_back(std::move(change));
}

Disk::FilePtr Disk::opened(const std::string& path, bool truncates)
{
    const auto known = m_now.files.find(path);
    if (known != m_now.files.end()) {
        if (truncates)
            truncated(*known->second, 0);
        return known->second;
    }
    const auto file = std::make_shared<File>();
    file->kept = path.size() < 4 || path.compare(path.size() - 4, 4, "-shm") != 0;
    named(file, path);
    return file;
}

void Disk::wrote(File& file, qint64 offset, const char* bytes, std::size_t size)
{
    if (file.kept)
        file.waiting.push_back({offset, std::string(bytes, size)});
}

void Disk::truncated(File& file, qint64 size)
{
    if (file.kept)
        file.waiting.push_back({size, {}, true});
}

/// The names go with it: a journal keeps their order, and a flush writes it up to its end.
void Disk::flush(File& file)
{
    for (const File::Write& write : file.waiting)
        applyTo(file.flushed, write);
    file.waiting.clear();
    for (const Change& change : m_changes)
        change(m_flushed);
    m_changes.clear();
}

void Disk::madeFolder(const std::string& path)
{
    m_made[path] = m_clock();
    change([path](Names& names) { names.folders.insert(path); });
}

void Disk::named(const FilePtr& file, const std::string& path)
{
    m_made[path] = m_clock();
    change([path, file](Names& names) { names.files[path] = file; });
}

void Disk::renamed(const std::string& from, const std::string& to)
{
    m_made[to] = madeAt(from);
    change([from, to](Names& names) {
        const auto file = names.files.find(from);
        if (file != names.files.end()) {
            const FilePtr moved = file->second;
            names.files.erase(file);
            names.files[to] = moved;
            return;
        }
        std::map<std::string, bool> folders;
        for (const std::string& folder : names.folders)
            folders[folder] = true;
        moveBelow(folders, from, to);
        moveBelow(names.files, from, to);
        folders.erase(from);
        names.folders.clear();
        for (const auto& folder : folders)
            names.folders.insert(folder.first);
        names.folders.insert(to);
    });
}

void Disk::unlinked(const std::string& path)
{
    if (m_now.files.count(path) > 0)
        m_deleted.push_back(path);
    change([path](Names& names) {
        names.files.erase(path);
        names.folders.erase(path);
    });
}

qint64 Disk::madeAt(const std::string& path) const
{
    const auto made = m_made.find(path);
    return made == m_made.end() ? -1 : made->second;
}

Disk::Left Disk::afterPowerCut(Random& random) const
{
    Names names = m_flushed;
    const int how = random.below(3);
    const int count = static_cast<int>(m_changes.size());
    const int done = how == 0 ? count : how == 1 ? 0 : random.below(count + 1);
    for (int i = 0; i < done; ++i)
        m_changes[static_cast<std::size_t>(i)](names);
    Left left;
    left.folders = names.folders;
    for (const auto& [path, file] : names.files) {
        if (file->kept)
            left.files[path] = contentLeft(*file, random);
    }
    return left;
}

void Disk::restore(const Left& left)
{
    const std::string root = m_root;
    const auto clock = m_clock;
    remove();
    const QString folder = QFile::decodeName(QByteArray::fromStdString(root));
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    for (const std::string& each : left.folders)
        QDir().mkpath(QFile::decodeName(QByteArray::fromStdString(each)));
    Names names;
    names.folders = left.folders;
    for (const auto& [path, content] : left.files) {
        QFile file(QFile::decodeName(QByteArray::fromStdString(path)));
        if (!file.open(QIODevice::WriteOnly) || file.write(content.data(), qint64(content.size())) < 0)
            qFatal("%s: %s", path.c_str(), qPrintable(file.errorString()));
        names.files[path] = std::make_shared<File>(File{content, {}, true});
    }
    insert(root.substr(0, root.size() - 1), clock);
    m_now = m_flushed = names;
    for (const auto& file : names.files)
        m_made[file.first] = clock();
}

} // namespace Simulation
