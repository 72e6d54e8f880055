#pragma once

#include "LineFault.h"

#include <QByteArray>
#include <QObject>

#include <memory>
#include <utility>

/// What carries the bytes of a line, whatever lies behind its name. Lives in the line's thread; nothing waits.
class ByteLine : public QObject
{
    Q_OBJECT

public:
    /// Tries once; opened() or failed() follows, perhaps before this returns. Needs to be closed.
    void open()
    {
        m_active = true;
        begin();
    }
    /// Gives up what was written and did not go out. Not from inside a signal of the line.
    void close()
    {
        m_active = false;
        end();
    }

    /// The device or address behind the name, as of the last attempt.
    virtual QString place() const = 0;
    virtual QByteArray readAll() = 0;
    /// Bytes that were written and did not leave, as far as the system says.
    virtual qint64 waiting() const = 0;
    /// At once and whole, or false.
    virtual bool write(const QByteArray& bytes) = 0;

signals:
    void opened();
    void readyRead();
    /// It did not open, or is no longer; once for each open().
    void failed(const LineFault& fault);

protected:
    virtual void begin() = 0;
    virtual void end() = 0;
    bool isActive() const { return m_active; }
    void fail(const LineFault& fault)
    {
        if (std::exchange(m_active, false))
            emit failed(fault);
    }

private:
    bool m_active = false; ///< opening or open
};

/// A serial device; see SerialLine.
std::unique_ptr<ByteLine> serialLineFor(const QString& name, qint32 baudRate);

/// The line behind a name for which PortName::problemOf() knows no problem. A baud rate means nothing to TCP.
std::unique_ptr<ByteLine> byteLineFor(const QString& name, qint32 baudRate);
