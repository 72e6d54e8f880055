#pragma once

#include "wire/FrameCodec.h"

#include <QIODevice>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>

/// A name that leads to a device for as long as the object lives: a symbolic link. A link that an earlier run left
/// behind is replaced; a file that is none, or a link to something other than a device, is never touched.
class PortLink
{
public:
    explicit PortLink(QString path);
    ~PortLink();
    Q_DISABLE_COPY(PortLink)

    bool point(const QString& device, QString* error);
    /// Takes the link away, unless another has turned it to its own device meanwhile.
    void remove();
    QString path() const { return m_path; }

private:
    /// Whether the link still leads to the device that it was turned to.
    bool isOurs() const;
    /// Whether nothing, or only a link to a device, stands in the way.
    bool mayReplace() const;

    const QString m_path;
    QString m_device;
};

class QTcpServer;

/// The PLC's end of the serial line: a pseudo-terminal behind a link, a real port, or a serial device server.
class PlcLine : public QObject
{
    Q_OBJECT

public:
    PlcLine();
    ~PlcLine() override;

    /// Makes a pseudo-terminal and turns `link` to its far end, for the program to open as its port.
    bool openLink(const QString& link, QString* error);
    /// Opens a port by its name. One that fails later is tried again every half second.
    bool openPort(const QString& name, qint32 baudRate, QString* error);
    /// Listens at "ADDRESS:PORT", an IPv6 address in brackets and 0 for any free port, as a serial device server does:
    /// one program at a time, the newest.
    bool listen(const QString& place, QString* error);

    /// The port that the program has to be set to; empty when that is the business of a real line.
    QString name() const;

    /// Sends a frame. Returns the time just before its last byte went out; see nowNs().
    qint64 send(const SComFrame& frame);
    /// Sends bytes as they are.
    void sendBytes(const QByteArray& bytes);
    /// Pulls the cable, and puts it back after `ms` milliseconds.
    void pull(int ms);

    /// A clock that only goes forward, nanoseconds.
    static qint64 nowNs();

signals:
    void frameSent(const SComFrame& frame);
    void bytesSent(const QByteArray& bytes);
    /// A frame whose checksum is right; `atNs` is when its last byte had arrived.
    void frameReceived(const SComFrame& frame, qint64 atNs);
    void pulled();
    void pluggedIn();

private:
    using Device = std::unique_ptr<QIODevice>;

    bool plugIn(QString* error);
    void putBack();
    /// Frames begin afresh with the device.
    void adopt(Device device);
    void onConnection();
    void onReadyRead();
    /// At once; what is written while the cable is pulled is lost.
    void write(const QByteArray& bytes);

    std::function<bool(QString* error)> m_make; ///< what plugging in is on this kind of line
    std::unique_ptr<PortLink> m_link;
    std::unique_ptr<QTcpServer> m_server;
    QString m_serverName;
    Device m_device;
    QTimer m_back;
    wire::FrameEncoder m_encoder;
    wire::FrameDecoder m_decoder;
};
