#include "NetworkCameras.h"

namespace {
constexpr int patienceMs = 30000;
}

bool NetworkCameras::start(const QString& programs, const QString& home, QString* error)
{
    for (int station = 1; station <= 2; ++station) {
        QProcess& camera = m_cameras[station - 1];
        camera.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        camera.start(programs + QStringLiteral("/gigesim"),
                     {QStringLiteral("--images"), home + QStringLiteral("/images/%1").arg(station),
                      QStringLiteral("--interface"), QStringLiteral("127.0.0.%1").arg(station + 1),
                      QStringLiteral("--serial"), QStringLiteral("SIM-%1").arg(station)});
        if (!camera.waitForReadyRead(patienceMs)) { // it says where it is
            *error = QStringLiteral("the network camera of station %1 does not start").arg(station);
            return false;
        }
    }
    return true;
}

NetworkCameras::~NetworkCameras()
{
    for (QProcess& camera : m_cameras) {
        camera.kill();
        camera.waitForFinished();
    }
}

bool NetworkCameras::order(int station, const QByteArray& text)
{
    return m_cameras[station - 1].write(text + '\n') > 0;
}
