#pragma once

#include "common/Background.h"

#include <QImage>
#include <QObject>
#include <QPointer>

class ICoreCtrl;
class QFileDialog;

/// Gets one picture for a guide: from a camera, as a picture to look at that no part answers for, or from a file. GUI
/// thread; nothing waits.
class PictureDesk : public QObject
{
    Q_OBJECT

public:
    /// `core` may be null, and outlives the desk.
    explicit PictureDesk(ICoreCtrl* core, QWidget* parent);

    /// Whether the core control takes pictures of that camera.
    bool canCapture(const QString& cameraKey) const;
    void capture(const QString& cameraKey);
    /// Asks for a file, beginning in `folder`.
    void askFile(const QString& folder);
    void open(const QString& path);

signals:
    /// `name` is the camera's or the file's, for people.
    void taken(const QImage& image, const QString& name);
    void failed(const QString& reason);

private:
    ICoreCtrl* m_core;
    QWidget* m_window;
    QPointer<QFileDialog> m_chooser;
    Mailbox m_mailbox;
    Background m_background{Background::AtEnd::Abandon};
};
