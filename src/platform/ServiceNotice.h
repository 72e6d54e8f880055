#pragma once

#include <QByteArray>
#include <QObject>
#include <QTimer>

namespace platform {

/// Tells the system's service manager, when it started the process, that the program is ready, that it still lives and
/// that it ends: systemd's notification protocol, datagrams to the socket that NOTIFY_SOCKET names. The sign of life
/// comes from the event loop of the object's thread, at half the period that WATCHDOG_USEC gives: a loop that hangs
/// sends none, and the manager starts the program anew. Without a service manager, and on Windows, nothing.
class ServiceNotice : public QObject
{
    Q_OBJECT

public:
    explicit ServiceNotice(QObject* parent = nullptr);

    /// The window is on the screen; from now on signs of life are due.
    void ready();
    /// The event loop has ended.
    void stopping();
    /// A sentence that the manager shows beside the state of the service.
    void status(const QString& sentence);

private:
    void send(const QByteArray& text) const;

    QTimer m_alive;
};

} // namespace platform
