#include "results/data/Statistics.h"

#include <QtMath>

#include <algorithm>
#include <cmath>

namespace Statistics {
namespace {

constexpr qint64 msAnHour = 3600000;
constexpr qint64 msADay = 24 * msAnHour;

/// Welford's recurrence: sums of squares of large numbers would lose the digits that matter.
class Welford
{
public:
    void add(double value)
    {
        if (std::isnan(value))
            return;
        ++m_summary.count;
        const double delta = value - m_summary.mean;
        m_summary.mean += delta / m_summary.count;
        m_squares += delta * (value - m_summary.mean);
        m_summary.minimum = m_summary.count == 1 ? value : std::min(m_summary.minimum, value);
        m_summary.maximum = m_summary.count == 1 ? value : std::max(m_summary.maximum, value);
    }
    Summary result() const
    {
        Summary summary = m_summary;
        summary.sigma = summary.count > 1 ? std::sqrt(m_squares / (summary.count - 1)) : 0;
        return summary;
    }

private:
    Summary m_summary;
    double m_squares = 0;
};

struct Filling
{
    Bucket bucket;
    Welford cycle;
    Welford reply;
    qint64 last[3] = {-1, -1, -1}; ///< by station
};

qint64 floorTo(qint64 wall, qint64 step)
{
    const qint64 rest = wall % step;
    return wall - (rest < 0 ? rest + step : rest);
}

Bucket bucketOf(qint64 wall, Span span, const Shifts& shifts)
{
    Bucket bucket;
    if (span == Span::Shift) {
        const Shifts::Shift shift = shifts.at(wall);
        bucket.begin = shift.begin;
        bucket.end = shift.end;
    } else {
        const qint64 step = span == Span::Hour ? msAnHour : msADay;
        bucket.begin = floorTo(wall, step);
        bucket.end = bucket.begin + step;
    }
    return bucket;
}

Bucket finished(const Filling& filling)
{
    Bucket bucket = filling.bucket;
    bucket.cycle = filling.cycle.result();
    bucket.replyMs = filling.reply.result();
    return bucket;
}

double quantile(const QVector<double>& sorted, double share)
{
    const double at = share * (sorted.size() - 1);
    const int below = int(at);
    const double above = sorted.value(below + 1, sorted.last());
    return sorted.at(below) + (at - below) * (above - sorted.at(below));
}

QVector<double> known(const QVector<double>& values)
{
    QVector<double> numbers;
    numbers.reserve(values.size());
    std::copy_if(values.begin(), values.end(), std::back_inserter(numbers), [](double v) { return std::isfinite(v); });
    return numbers;
}

} // namespace

const QVector<double>& column(const PartSeries& series, Value value)
{
    const QVector<double>* const columns[] = {&series.angle, &series.x, &series.y, &series.score, &series.replyMs};
    return *columns[value];
}

PartSeries::Column columnOf(Value value)
{
    const PartSeries::Column columns[] = {PartSeries::Angles, PartSeries::Xs, PartSeries::Ys, PartSeries::Scores,
                                          PartSeries::ReplyTimes};
    return columns[value];
}

double Tally::yield() const
{
    const int judged = found + notFound;
    return judged > 0 ? 100.0 * found / judged : qQNaN();
}

void Tally::add(PartOutcome outcome)
{
    (outcome == PartOutcome::Found ? found : outcome == PartOutcome::Refused ? refused : notFound) += 1;
}

Summary summary(const QVector<double>& values)
{
    Welford welford;
    for (const double value : values)
        welford.add(value);
    return welford.result();
}

QVector<Bucket> buckets(const PartSeries& series, Span span, const Shifts& shifts, int most)
{
    QVector<Bucket> buckets;
    if (series.size() == 0)
        return buckets;
    Filling filling{bucketOf(series.wall.first(), span, shifts), {}, {}};
    for (int i = 0; i < series.size(); ++i) {
        const qint64 wall = series.wall.at(i);
        while (wall >= filling.bucket.end) {
            buckets.append(finished(filling));
            const Bucket next = bucketOf(filling.bucket.end, span, shifts);
            const bool far = (wall - next.begin) / qMax<qint64>(1, next.end - next.begin) > most;
            filling = Filling{far ? bucketOf(wall, span, shifts) : next, {}, {}};
        }
        filling.bucket.tally.add(PartOutcome(series.outcome.at(i)));
        if (!series.replyMs.isEmpty())
            filling.reply.add(series.replyMs.at(i));
        if (series.station.isEmpty())
            continue;
        qint64& last = filling.last[qBound(0, int(series.station.at(i)), 2)];
        if (last >= 0)
            filling.cycle.add((wall - last) / 1000.0);
        last = wall;
    }
    buckets.append(finished(filling));
    return buckets.size() > most ? buckets.mid(buckets.size() - most) : buckets;
}

QMap<QString, Tally> byModel(const PartSeries& series)
{
    QVector<Tally> tallies(series.models.size());
    for (int i = 0; i < series.size(); ++i)
        tallies[series.model.at(i)].add(PartOutcome(series.outcome.at(i)));
    QMap<QString, Tally> named;
    for (int i = 0; i < tallies.size(); ++i)
        named.insert(series.models.at(i), tallies.at(i));
    return named;
}

QMap<int, int> failuresByError(const PartSeries& series)
{
    QMap<int, int> counts;
    for (int i = 0; i < series.size(); ++i) {
        if (series.outcome.at(i) != qint8(PartOutcome::Found))
            ++counts[series.error.at(i)];
    }
    return counts;
}

QMap<int, int> failuresByAngle(const PartSeries& series)
{
    QMap<int, int> counts;
    for (int i = 0; i < series.size(); ++i) {
        if (series.outcome.at(i) != qint8(PartOutcome::Found))
            ++counts[int(series.angle.at(i))];
    }
    return counts;
}

QVector<double> unwrapped(const QVector<double>& degrees)
{
    double x = 0;
    double y = 0;
    for (const double angle : degrees) {
        if (!std::isnan(angle)) {
            x += std::cos(qDegreesToRadians(angle));
            y += std::sin(qDegreesToRadians(angle));
        }
    }
    const double mean = qRadiansToDegrees(std::atan2(y, x));
    const double base = mean < 0 ? mean + 360 : mean;
    QVector<double> moved = degrees;
    for (double& angle : moved)
        angle = std::isnan(angle) ? angle : base + std::remainder(angle - base, 360.0);
    return moved;
}

double Histogram::normal(double value) const
{
    if (summary.sigma <= 0)
        return 0;
    const double z = (value - summary.mean) / summary.sigma;
    return summary.count * width * std::exp(-z * z / 2) / (summary.sigma * std::sqrt(2 * M_PI));
}

Histogram histogram(const QVector<double>& values, int most)
{
    Histogram histogram;
    QVector<double> sorted = known(values);
    histogram.summary = Statistics::summary(sorted);
    if (sorted.isEmpty())
        return histogram;
    std::sort(sorted.begin(), sorted.end());
    const double range = sorted.last() - sorted.first();
    const double wanted = 2 * (quantile(sorted, 0.75) - quantile(sorted, 0.25)) / std::cbrt(double(sorted.size()));
    const int bins = range > 0 ? qBound(1, int(std::ceil(range / qMax(wanted, range / most))), most) : 1;
    histogram.first = range > 0 ? sorted.first() : sorted.first() - 0.5;
    histogram.width = range > 0 ? range / bins : 1;
    histogram.counts.fill(0, bins);
    for (const double value : qAsConst(sorted))
        ++histogram.counts[qMin(bins - 1, int((value - histogram.first) / histogram.width))];
    return histogram;
}

Capability capability(const QVector<double>& values, const Tolerance& tolerance)
{
    const Summary own = summary(known(values));
    Capability result;
    const double toUpper = tolerance.upper - own.mean;
    const double toLower = own.mean - tolerance.lower;
    if (own.sigma > 0) {
        result.cp = (tolerance.upper - tolerance.lower) / (6 * own.sigma);
        result.cpk = std::fmin(toUpper, toLower) / (3 * own.sigma); // of the one that is known, if one is missing
    }
    for (const double value : values)
        result.outside += value < tolerance.lower || value > tolerance.upper ? 1 : 0;
    return result;
}

} // namespace Statistics
