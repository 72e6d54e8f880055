// A line without a wire: what is sent comes back. Set the port's name to "echo".

#include <valvecell/Export.h>
#include <valvecell/ISerialPort.h>

#include <QString>
#include <QTimer>

#include <memory>

namespace {

class EchoLine : public ISerialPort
{
public:
    void setReceiveCallback(QObject*, ReceiveCallback callback) override { m_receive = std::move(callback); }

    /// A real module opens its device here, and reports what keeps it from it.
    bool open(const QString& portName, const QString& baudRate) override
    {
        bool isNumber = false;
        baudRate.toInt(&isNumber);
        m_context = isNumber && portName == QLatin1String("echo") ? std::make_unique<QObject>() : nullptr;
        return m_context != nullptr;
    }

    /// With the context go the frames on their way: no callback runs after it.
    void close() override { m_context.reset(); }

    void send(const SComFrame* frame) override
    {
        if (m_context)
            QTimer::singleShot(0, m_context.get(), [this, copy = *frame] { m_receive(copy); });
    }

private:
    ReceiveCallback m_receive = [](SComFrame) {};
    std::unique_ptr<QObject> m_context; ///< while the port is open
};

} // namespace

VALVECELL_MODULE_VERSION("1.0")

VALVECELL_MODULE_EXPORT ISerialPort* SerialPortCreate()
{
    return new EchoLine;
}
