#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <QFile>

#include <functional>
#include <zip.h>

/// One source of an archive that is read while the archive is written, by file or by a content that is asked for only
/// then; it keeps size and checksum of what was read. Lives as long as the archive is open.
class ZipFeed
{
public:
    /// \param read called with the bytes of each piece; false stops all
    ZipFeed(const QString& path, std::function<bool(qint64)> read);
    explicit ZipFeed(std::function<QByteArray()> content);

    zip_source_t* source(zip_t* archive) { return zip_source_function(archive, &ZipFeed::serve, this); }

    /// The file was gone when its turn came; the archive has an empty one in its place.
    bool isGone() const { return m_gone; }
    qint64 size() const { return m_size; }
    QByteArray sha256() const { return m_hash.result().toHex(); }
    QString error() const { return m_error; }

private:
    static zip_int64_t serve(void* feed, void* data, zip_uint64_t length, zip_source_cmd_t command);
    void begin();
    zip_int64_t read(char* data, zip_uint64_t length);

    QFile m_file;
    std::function<bool(qint64)> m_read;
    std::function<QByteArray()> m_content;
    QByteArray m_rest;
    QCryptographicHash m_hash{QCryptographicHash::Sha256};
    qint64 m_size = 0;
    bool m_gone = false;
    QString m_error;
};
