#pragma once

#include <QByteArray>
#include <QString>

/// The code of a machine, which its licence is bound to: 25 letters and digits in groups of five, such as
/// "7QK2M-3ZD9P-0AB4C-XY81T-5EFGH", that can be read out on the telephone. It is made from a hash, so that it reveals
/// nothing of the machine itself. Any thread.
namespace MachineCode {

/// The code of the machine with this identity (see platform::machineIdentity()); empty when the identity is.
QString of(const QByteArray& identity);

/// The code as of() writes it, from one that somebody typed: small letters, full-width forms, blanks and missing
/// hyphens are mended, O is taken for 0, and I and L for 1. Empty when it is no code; 31 of 32 typing errors are found
/// so.
QString parse(const QString& typed);

} // namespace MachineCode
