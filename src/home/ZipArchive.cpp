#include "home/ZipArchive.h"

#include <ctime>

ZipFeed::ZipFeed(const QString& path, std::function<bool(qint64)> read)
    : m_file(path)
    , m_read(std::move(read))
{
}

ZipFeed::ZipFeed(std::function<QByteArray()> content)
    : m_content(std::move(content))
{
}

void ZipFeed::begin()
{
    m_hash.reset();
    m_size = 0;
    if (m_content)
        m_rest = m_content();
    else
        m_gone = !m_file.open(QIODevice::ReadOnly);
}

zip_int64_t ZipFeed::read(char* data, zip_uint64_t length)
{
    qint64 got = 0;
    if (m_content) {
        got = qMin(qint64(length), qint64(m_rest.size()));
        std::copy_n(m_rest.constData(), got, data);
        m_rest.remove(0, int(got));
    } else if (!m_gone) {
        got = m_file.read(data, qint64(length));
        if (got < 0)
            m_error = m_file.fileName() + QStringLiteral(": ") + m_file.errorString();
    }
    if (got < 0 || (m_read && !m_read(got)))
        return -1;
    m_hash.addData(data, int(got));
    m_size += got;
    return got;
}

zip_int64_t ZipFeed::serve(void* feed, void* data, zip_uint64_t length, zip_source_cmd_t command)
{
    ZipFeed& own = *static_cast<ZipFeed*>(feed);
    switch (command) {
    case ZIP_SOURCE_OPEN:
        own.begin();
        return 0;
    case ZIP_SOURCE_READ:
        return own.read(static_cast<char*>(data), length);
    case ZIP_SOURCE_CLOSE:
        own.m_file.close();
        return 0;
    case ZIP_SOURCE_STAT: {
        auto* const stat = static_cast<zip_stat_t*>(data);
        zip_stat_init(stat);
        stat->mtime = std::time(nullptr);
        stat->valid |= ZIP_STAT_MTIME;
        return sizeof *stat;
    }
    case ZIP_SOURCE_ERROR: {
        int* const codes = static_cast<int*>(data);
        codes[0] = ZIP_ER_READ;
        codes[1] = 0;
        return 2 * sizeof(int);
    }
    case ZIP_SOURCE_FREE:
        return 0;
    case ZIP_SOURCE_SUPPORTS:
        return ZIP_SOURCE_SUPPORTS_READABLE;
    default:
        return -1;
    }
}
