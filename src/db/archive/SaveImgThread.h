#pragma once

#include <QImage>
#include <QThread>

/// Writes one image to one file, and ends with finished(). The image is shared, not copied.
class SaveImgThread : public QThread
{
    Q_OBJECT

public:
    /// `folder` is absolute and made when it is missing; the format follows from the file name's suffix.
    SaveImgThread(const QImage& image, const QString& folder, const QString& fileName, QObject* parent = nullptr);

    QString path() const { return m_folder + QLatin1Char('/') + m_fileName; }

    qint64 bytes() const { return m_bytes; } ///< of the image's pixels

    /// Before start(): it gives memory that is free again back to the system when it has ended.
    void setLastOfBurst() { m_lastOfBurst = true; }

    /// Once it has ended: why the image does not lie under the path; empty when it does.
    QString error() const { return m_error; }

    /// What the thread does, on the caller's; instead of start().
    void write();

protected:
    void run() override;

private:
    QImage m_image;
    const qint64 m_bytes;
    bool m_lastOfBurst = false;
    const QString m_folder;
    const QString m_fileName;
    QString m_error;
};

/// Writes the image beside the path, flushes it and renames it, so that nobody ever sees half of it. Gray images become
/// gray files. On failure, `error` says path and reason, and nothing is left behind. Any thread.
bool writeImageFile(const QImage& image, const QString& path, QString* error);
