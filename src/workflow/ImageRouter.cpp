#include "workflow/ImageRouter.h"

#include "config/ksGlobalConfig.h"

#include <valvecell/ResultKeys.h>

ImageRouter::ImageRouter(const ksGlobalConfig& config, IEngine::ResultCallback result, QObject* parent)
    : QObject(parent)
    , m_config(config)
    , m_result(std::move(result))
{
}

/// Tells of the image before the engine has it: the engine's time counts from there.
void ImageRouter::onImage(const QString& cameraKey, const QImage& image)
{
    const int number = m_config.stationOfCamera(cameraKey);
    if (number == 0) {
        qDebug("image of camera %s, which belongs to no station", qUtf8Printable(cameraKey));
        return;
    }
    emit imageArrived(number);
    const StationConfig& station = m_config.station(number);
    if (m_engine)
        m_engine->runTask({{QLatin1String(ResultKeys::originImage), image}}, station.solution, station.runModel,
                          m_result);
}
