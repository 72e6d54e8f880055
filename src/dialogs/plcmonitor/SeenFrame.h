#pragma once

#include <valvecell/SComFrame.h>

#include <QCoreApplication>
#include <QStringList>

/// A frame of the PLC line, with the moment at which it was seen.
struct SeenFrame
{
    qint64 time = 0; ///< milliseconds since the epoch
    bool received = false;
    SComFrame frame;

    /// The program's own sign of life; the PLC's frame of the same letter carries model indices.
    bool isHeartbeat() const;
    /// Says that a part got no valid answer: a result of 360° or more, or the notice after it.
    bool isWithoutResult() const;
};

/// How a seen frame reads, in the program's language.
class FrameText
{
    Q_DECLARE_TR_FUNCTIONS(FrameText)

public:
    enum Column { Time, Direction, Command, Words, Meaning, ColumnCount };

    static QString title(Column column);
    /// One text for each column; the time with its day.
    static QStringList cells(const SeenFrame& seen);

    static QString direction(bool received);
    /// The letter of a command; for one without a letter its number, such as "0xF1".
    static QString command(quint8 code);
    /// The eight words, parted by blanks.
    static QString words(const SComFrame& frame);
    /// What the frame means to the one who receives it.
    static QString meaning(const SeenFrame& seen);

private:
    static QString received(const SComFrame& frame);
    static QString sent(const SComFrame& frame);
    static QString result(int station, const SComFrame& frame);
};
