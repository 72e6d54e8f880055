#pragma once

#include "common/Background.h"

#include <QImage>
#include <QObject>

class QWidget;

/// Takes an image out of a viewer: to the clipboard, or to a file that the operator names. Files are written on another
/// thread. GUI thread.
class ImageExport : public QObject
{
    Q_OBJECT

public:
    /// Dialogs and tips are shown over `viewer`.
    explicit ImageExport(QWidget* viewer);

    static void copy(const QImage& image);

    /// Asks for a file and writes the image to it.
    void askAndSave(const QImage& image);
    /// Writes the image to a PNG, JPEG or BMP file by its suffix; PNG without one.
    void save(const QImage& image, const QString& path);

signals:
    /// \param error empty when the file was written
    void saved(const QString& path, const QString& error);

private:
    /// Reports to the operator by a tip over the viewer how it went.
    void onWritten(const QString& error);

    QWidget* m_viewer;
    QString m_path;
    bool m_writing = false;
    Background m_background{Background::AtEnd::Finish};
};
