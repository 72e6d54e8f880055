#include "platform/MachineIdentity.h"

#include <QFile>
#include <QString>

namespace platform {

QByteArray machineIdentity()
{
    for (const char* path : {"/etc/machine-id", "/var/lib/dbus/machine-id"}) {
        QFile file(QString::fromLatin1(path));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        QByteArray id = file.readLine(256).trimmed();
        if (!id.isEmpty() && id != "uninitialized")
            return id;
    }
    return {};
}

} // namespace platform
