#include "dialogs/cameras/LivePicture.h"

#include <valvecell/ICameraPreview.h>

/// Hands a picture from a camera's thread over to the dialog; a picture that comes when the dialog is gone finds nobody
/// connected.
class PreviewRelay : public QObject
{
    Q_OBJECT

signals:
    void answered(const QImage& image, const QString& error);
};

LivePicture::LivePicture(ICameraPreview* preview, QString cameraKey, QObject* parent)
    : QObject(parent)
    , m_preview(preview)
    , m_key(std::move(cameraKey))
    , m_relay(std::make_shared<PreviewRelay>())
{
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &LivePicture::ask);
    connect(m_relay.get(), &PreviewRelay::answered, this, &LivePicture::take, Qt::QueuedConnection);
}

LivePicture::~LivePicture() = default;

void LivePicture::single()
{
    if (!m_waiting)
        ask();
}

void LivePicture::setRunning(bool running)
{
    m_running = running;
    m_pause.stop();
    if (running && !m_waiting)
        ask();
}

void LivePicture::ask()
{
    m_waiting = m_preview && m_preview->preview(m_key, [relay = m_relay](const QImage& image, const QString& error) {
        emit relay->answered(image, error);
    });
    if (m_waiting)
        return;
    if (m_running)
        m_pause.start(failurePauseMs);
    emit failed(tr("相机现在不能取像"));
}

void LivePicture::take(const QImage& image, const QString& error)
{
    m_waiting = false;
    if (m_running)
        m_pause.start(image.isNull() ? failurePauseMs : pauseMs);
    if (image.isNull())
        emit failed(error);
    else
        emit pictureCame(image);
}

#include "LivePicture.moc"
