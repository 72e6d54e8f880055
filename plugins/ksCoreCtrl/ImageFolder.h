#pragma once

#include <QImage>
#include <QStringList>

/// The images of a folder, one after the other in plain order of their file names and around again. The folder is
/// listed anew for each round, so that files may come and go. One thread.
class ImageFolder
{
public:
    struct Shot
    {
        QImage image;        ///< null when a whole round held none
        QStringList skipped; ///< for each file that was passed over before it: name and reason
    };

    explicit ImageFolder(QString path = {});

    const QString& path() const { return m_path; }

    /// The next image that can be read. Gray images of 8 bits come as QImage::Format_Grayscale8, whatever their file
    /// says of palettes.
    Shot next();

private:
    QStringList list() const;

    QString m_path;
    QStringList m_rest; ///< of the present round
};
