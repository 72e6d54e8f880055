#pragma once

#include <QString>

/// Where a line leads to, as the setting names it: a device path, a link to one, a Windows port name, or
/// "tcp:HOST:PORT" for a serial device server, an IPv6 address in brackets. Any thread.
struct PortName
{
    QString device; ///< what was typed, without blanks at its ends; also of a TCP name
    QString host;   ///< name or address; empty for a device
    quint16 port = 0;

    bool isTcp() const { return port != 0; }

    /// Takes a name apart; what an input method types in full width counts as the same.
    static PortName from(const QString& text);

    /// Why there can be no line of that name, and what a right one looks like, in the screen's language; empty when
    /// there can be one, there or not.
    static QString problemOf(const QString& text);
};
