// Where Qt came without its module for serial ports: device servers are reached all the same.

#include "ByteLine.h"
#include "PortList.h"

namespace {

class NoSerialLine : public ByteLine
{
public:
    explicit NoSerialLine(QString name)
        : m_name(std::move(name))
    {
    }

    QString place() const override { return m_name; }
    QByteArray readAll() override { return {}; }
    qint64 waiting() const override { return 0; }
    bool write(const QByteArray&) override { return false; }

private:
    void begin() override
    {
        fail({LineFault::NotOpened, m_name, QStringLiteral("built without serial ports, use tcp:HOST:PORT")});
    }
    void end() override {}

    const QString m_name;
};

} // namespace

std::unique_ptr<ByteLine> serialLineFor(const QString& name, qint32)
{
    return std::make_unique<NoSerialLine>(name);
}

QVector<FoundPort> findPorts(const QString&)
{
    return {};
}
