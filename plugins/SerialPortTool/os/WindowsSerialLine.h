#pragma once

#include "ByteLine.h"

#include <QWinEventNotifier>

#include <windows.h>

/// A serial port by the system's own calls, 8N1 without flow control, of which this program is the only user: for a Qt
/// without its module for serial ports. Reading and writing overlap; the thread of the line never waits for either.
class WindowsSerialLine : public ByteLine
{
    Q_OBJECT

public:
    /// `name`: a port's plain name, such as COM3. It is looked up at each attempt.
    WindowsSerialLine(QString name, qint32 baudRate);
    ~WindowsSerialLine() override;

    QString place() const override { return m_name; }
    QByteArray readAll() override { return std::exchange(m_received, {}); }
    qint64 waiting() const override;
    bool write(const QByteArray& bytes) override;

private:
    /// What the system works on, and says when it is done by an event.
    struct Transfer
    {
        explicit Transfer(QObject* owner);
        ~Transfer();
        Q_DISABLE_COPY(Transfer)

        /// Whether it ended well; `count` bytes went.
        bool result(HANDLE port, DWORD& count, bool wait = false);

        OVERLAPPED overlapped{};
        QWinEventNotifier done;
        bool isPending = false;
        QByteArray bytes;
    };

    void begin() override;
    void end() override;
    LineFault whyNot() const;
    bool set();
    void lose();
    /// Asks for the next byte, however long it takes; what came with it is there at once.
    bool awaitByte();
    void onByte();
    bool takeRest();
    /// What is to be sent, in one go.
    bool send();
    void onSent();

    const QString m_name;
    const qint32 m_baudRate;
    HANDLE m_port = INVALID_HANDLE_VALUE;
    Transfer m_reading{this};
    Transfer m_sending{this};
    QByteArray m_received;
    QByteArray m_toSend;
};
