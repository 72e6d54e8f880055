#pragma once

#include <QCoreApplication>
#include <QImage>
#include <QStringList>

/// One image file as it was read; and how image files are found and written. Any thread.
struct ImageFile
{
    Q_DECLARE_TR_FUNCTIONS(ImageFile)

public:
    /// What has more is not read: a damaged header must not make the program reserve gigabytes.
    static constexpr qint64 maxPixels = 200'000'000;

    QString path;
    QImage image;   ///< null when it could not be read
    QString reason; ///< then why, in the operator's language

    /// Reads by the content, not by the suffix: a wrong one is common in archives.
    static ImageFile read(const QString& path);
    /// The same within a box, in its shape: formats that can are read so in a fraction of the time. Null when it could
    /// not be read.
    static QImage readScaled(const QString& path, const QSize& box);
    /// The file's name and the reason; empty when it was read.
    QString problem() const;

    /// "*.bmp", "*.jpg" and so on: camera images that read() takes, no drawings and icons.
    static QStringList patterns();
    /// The images in a folder and below it, in the order of their paths. Links are not followed.
    static QStringList below(const QString& folder);

    /// Writes in one step, so that the file is whole or not there; its folder is made. Returns false with file and
    /// reason.
    /// \param format as in "jpg"; empty: by the file's suffix
    static bool write(const QImage& image, const QString& path, const QByteArray& format, QString* error);
};
