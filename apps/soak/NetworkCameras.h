#pragma once

#include <QProcess>

#include <array>

/// The stations' cameras as simulated network cameras, each a process of its own on an address of the loopback network.
class NetworkCameras
{
public:
    /// They deliver the images of `home`/images/1 and /2. False with the reason when one does not start.
    bool start(const QString& programs, const QString& home, QString* error);
    ~NetworkCameras();

    /// One of its orders, such as "vanish" and "return"; stations count from 1.
    bool order(int station, const QByteArray& text);

private:
    std::array<QProcess, 2> m_cameras;
};
