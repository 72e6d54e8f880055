#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QObject>
#include <QTimer>

#include <memory>

class ICameraPreview;
class PreviewRelay;

/// Pictures of one camera to look at, one after the other or a single one; the next is asked for when the one before
/// has come, so that a slow camera is never pressed. GUI thread.
class LivePicture : public QObject
{
    Q_OBJECT

public:
    /// Milliseconds from one picture to the next, at least, and after one that failed.
    static constexpr int pauseMs = 100;
    static constexpr int failurePauseMs = 1000;

    /// `preview` outlives the object; null: there is never a picture.
    LivePicture(ICameraPreview* preview, QString cameraKey, QObject* parent = nullptr);
    ~LivePicture() override;

    bool isRunning() const { return m_running; }
    bool isWaiting() const { return m_waiting; }

public slots:
    void single();
    void setRunning(bool running);

signals:
    void pictureCame(const QImage& image);
    void failed(const QString& reason);

private:
    void ask();
    void take(const QImage& image, const QString& error);

    ICameraPreview* m_preview;
    const QString m_key;
    std::shared_ptr<PreviewRelay> m_relay; ///< shared with the camera's callback
    QTimer m_pause;
    bool m_running = false;
    bool m_waiting = false;
};
