#pragma once

#include "Mailbox.h"

#include <QImage>
#include <QObject>
#include <QStringList>
#include <QThreadPool>

/// Reads image files on a thread of its own, one after another.
class ImageLoader : public QObject
{
    Q_OBJECT

public:
    explicit ImageLoader(QObject* parent = nullptr);
    /// Waits for the file in hand and drops the others.
    ~ImageLoader() override;

    /// GUI thread, returns at once; loaded() or failed() follows, in the order of the calls.
    void load(const QString& path);

    /// Reads one file; a null image and a reason in the operator's language when it is not readable as an image or has
    /// more than `maxPixels`. Any thread.
    static QImage read(const QString& path, QString* error);
    static constexpr qint64 maxPixels = 200'000'000;

    /// What a file dialog and a folder search look for: "*.bmp", "*.jpg" and so on.
    static QStringList patterns();

signals:
    void loaded(const QString& path, const QImage& image);
    void failed(const QString& path, const QString& reason);

private:
    Mailbox m_mailbox;
    QThreadPool m_pool;
};
