#pragma once

#include <QtGlobal>

/// What the system's sockets offer beyond what Qt passes on. `socket` as QAbstractSocket::socketDescriptor().
namespace os {

/// Makes a connection fail two to three seconds after its other end stopped answering, whether or not it is written to.
void noticeLoss(qintptr socket);

/// Bytes in the system's hands that the other end did not acknowledge; 0 where the system does not say.
qint64 unacknowledged(qintptr socket);

} // namespace os
