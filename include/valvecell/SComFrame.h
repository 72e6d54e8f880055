#pragma once

#include <QMetaType>

/// One frame of the PLC's serial line, as the serial module hands it over and takes it.
///
/// The record is passed by value and carries no resources. The words are signed: negative coordinates travel as they
/// are. What the seven header bytes hold on the wire is the serial module's business; the program neither reads nor
/// writes them.
struct SComFrame
{
    quint8 header[7] = {};
    quint8 command = 0;
    qint16 data[8] = {};
};

static_assert(sizeof(SComFrame) == 24, "the frame is a record of 24 bytes without gaps");

Q_DECLARE_METATYPE(SComFrame)
