#pragma once

#include <valvecell/IEngine.h>

#include <QImage>
#include <QObject>

class ksGlobalConfig;

/// Hands each camera's image to the engine, with the solution and the run model of the camera's station. GUI thread.
class ImageRouter : public QObject
{
    Q_OBJECT

public:
    /// `config` outlives the router. `result` receives the engine's maps on the engine's threads.
    ImageRouter(const ksGlobalConfig& config, IEngine::ResultCallback result, QObject* parent = nullptr);

    /// Null stops the routing; the engine outlives its use.
    void setEngine(IEngine* engine) { m_engine = engine; }

public slots:
    /// An image of a camera that belongs to no station is dropped.
    void onImage(const QString& cameraKey, const QImage& image);

signals:
    /// The image of a station's trigger arrived.
    void imageArrived(int station);

private:
    const ksGlobalConfig& m_config;
    IEngine::ResultCallback m_result;
    IEngine* m_engine = nullptr;
};
