#include "results/data/Shifts.h"

#include "db/PartTable.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr qint64 msOfDay = 86400000;

/// Toward minus infinity.
qint64 midnightOf(qint64 wall)
{
    const qint64 rest = wall % msOfDay;
    return wall - (rest < 0 ? rest + msOfDay : rest);
}

} // namespace

Shifts Shifts::fromText(const QString& text, QString* error)
{
    Shifts shifts;
    QVector<qint64> begins;
    const QStringList parts = text.split(QRegularExpression(QStringLiteral("[,;，；、\\s]+")), Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        const QTime time = QTime::fromString(part, QStringLiteral("h:m"));
        const qint64 begin = time.msecsSinceStartOfDay();
        if (!time.isValid() || begins.contains(begin)) {
            if (error)
                *error = time.isValid() ? tr("班次时间“%1”重复").arg(part)
                                        : tr("班次时间“%1”不对，应为时:分，例如 06:00, 14:00, 22:00").arg(part);
            return shifts;
        }
        begins.append(begin);
    }
    std::sort(begins.begin(), begins.end());
    if (!begins.isEmpty())
        shifts.m_begins = begins;
    return shifts;
}

QString Shifts::toText() const
{
    QStringList texts;
    for (const qint64 begin : m_begins)
        texts << QTime::fromMSecsSinceStartOfDay(int(begin)).toString(QStringLiteral("hh:mm"));
    return texts.join(QStringLiteral(", "));
}

Shifts::Shift Shifts::at(qint64 wall) const
{
    qint64 midnight = midnightOf(wall);
    auto after = std::upper_bound(m_begins.begin(), m_begins.end(), wall - midnight);
    if (after == m_begins.begin()) { // the last one of the day before
        midnight -= msOfDay;
        after = m_begins.end();
    }
    Shift shift;
    shift.number = int(after - m_begins.begin());
    shift.day = PartTable::timeOf(midnight).date();
    shift.begin = midnight + *(after - 1);
    shift.end = after == m_begins.end() ? midnight + msOfDay + m_begins.first() : midnight + *after;
    return shift;
}

QString Shifts::nameOf(int number) const
{
    const QString ofThree[] = {tr("早班"), tr("中班"), tr("夜班")};
    return count() == 3 && number >= 1 && number <= 3 ? ofThree[number - 1] : tr("第%1班").arg(number);
}
