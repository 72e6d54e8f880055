#pragma once

#include <QIODevice>

#include <memory>

class QSocketNotifier;

namespace platform {

/// A serial line without a wire: this end is the device, the far end is opened by its name as any serial port. It needs
/// the event loop of its thread, passes bytes as they are (raw, no echo), and stays usable however often the far end
/// is opened and closed. What is written while nobody reads the far end is lost once the system's buffer is full, as on
/// a wire. Read on readyRead(), which comes again as long as bytes are left. Not available on Windows: open() fails.
class PseudoTerminal : public QIODevice
{
    Q_OBJECT

public:
    explicit PseudoTerminal(QObject* parent = nullptr);
    ~PseudoTerminal() override;

    /// Makes the line; `mode` is ReadWrite, always unbuffered. On failure errorString() says why.
    bool open(OpenMode mode) override;
    /// Cuts the line: whoever has the far end open gets errors from then on.
    void close() override;

    /// The name of the far end, a device path; empty while closed.
    QString farEnd() const { return m_farEnd; }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    /// Opens both ends; what was opened of them when it fails is closed by closePair().
    bool makePair();
    void closePair();

    std::unique_ptr<QSocketNotifier> m_notifier;
    QString m_farEnd;
    int m_near = -1;
    int m_held = -1; ///< the far end, held open so that the line outlives its users
};

} // namespace platform
