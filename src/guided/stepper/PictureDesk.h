#pragma once

#include "common/Background.h"

#include <QImage>
#include <QObject>
#include <QPointer>

class ICoreCtrl;
class QFileDialog;

/// Gets one picture for a guide: from a camera, as a picture to look at that no part answers for, or from a file. Each
/// wish takes the place of the one before: a picture that was asked for earlier and comes later is dropped, as it could
/// be that of another station. GUI thread; nothing waits.
class PictureDesk : public QObject
{
    Q_OBJECT

public:
    /// `core` may be null, and outlives the desk.
    explicit PictureDesk(ICoreCtrl* core, QWidget* parent);

    /// Whether the core control takes pictures of that camera.
    bool canCapture(const QString& cameraKey) const;
    void capture(const QString& cameraKey);
    /// Asks for a file, beginning in the home's archive of camera pictures if there is one.
    void askFile(const QString& home);
    void open(const QString& path);

    /// A wish that the caller fulfils himself, by its number; also a way to want nothing any more.
    int wish() { return ++m_wish; }
    /// Whether nothing was wished for since.
    bool stillWanted(int wish) const { return wish == m_wish; }

signals:
    /// `name` is the camera's or the file's, for people.
    void taken(const QImage& image, const QString& name);
    void failed(const QString& reason);

private:
    ICoreCtrl* m_core;
    QWidget* m_window;
    QPointer<QFileDialog> m_chooser;
    int m_wish = 0;
    Mailbox m_mailbox;
    Background m_background{Background::AtEnd::Abandon};
};
