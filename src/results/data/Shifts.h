#pragma once

#include <QCoreApplication>
#include <QDateTime>
#include <QVector>

/// The shifts of a day by the times at which they begin: "06:00, 14:00, 22:00". The last one of a day goes on to the
/// first of the next, and belongs to the day on which it began.
class Shifts
{
    Q_DECLARE_TR_FUNCTIONS(Shifts)

public:
    /// One from midnight to midnight.
    Shifts() = default;
    /// What is wrong goes to `error`, and the shifts are those of a default one.
    static Shifts fromText(const QString& text, QString* error = nullptr);
    QString toText() const;

    struct Shift
    {
        QDate day;
        int number = 1;   ///< from 1, in the order of the times
        qint64 begin = 0; ///< see PartTable for such times
        qint64 end = 0;   ///< not included
    };
    /// The shift that has that moment.
    Shift at(qint64 wall) const;
    Shift next(const Shift& shift) const { return at(shift.end); }
    Shift previous(const Shift& shift) const { return at(shift.begin - 1); }
    int count() const { return m_begins.size(); }
    /// "早班" and so on for three, "第1班" for other numbers, in the operator's language.
    QString nameOf(int number) const;

private:
    QVector<qint64> m_begins{0}; ///< milliseconds from midnight, ascending
};
