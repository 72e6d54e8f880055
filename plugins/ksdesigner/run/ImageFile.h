#pragma once

#include <QCoreApplication>
#include <QImage>
#include <QStringList>

/// One image file as it was read.
struct ImageFile
{
    Q_DECLARE_TR_FUNCTIONS(ImageFile)

public:
    QString path;
    QImage image;  ///< null when it could not be read
    QString error; ///< then why, in the operator's language

    /// Any thread. What has more than `maxPixels` is not read.
    static ImageFile read(const QString& path);
    static constexpr qint64 maxPixels = 200'000'000;

    /// "*.bmp", "*.jpg" and so on, all that read() takes.
    static QStringList patterns();
    /// The images in a folder and below it, in the order of their paths. Links are not followed. Any thread.
    static QStringList below(const QString& folder);
};
