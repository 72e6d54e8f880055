#include "ByteLine.h"

#include "PortName.h"
#include "TcpLine.h"

std::unique_ptr<ByteLine> byteLineFor(const QString& name, qint32 baudRate)
{
    const PortName place = PortName::from(name);
    if (place.isTcp())
        return std::make_unique<TcpLine>(place);
    return serialLineFor(place.device, baudRate);
}
