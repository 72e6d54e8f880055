#pragma once

#include "results/data/PartFilter.h"
#include "results/data/Shifts.h"

#include <QMap>

/// What charts and reports show of parts: pure computations, any thread.
namespace Statistics {

/// What is measured of a found part.
enum Value { Angle, X, Y, Score, ReplyMs };
constexpr Value values[] = {Angle, X, Y, Score, ReplyMs};
const QVector<double>& column(const PartSeries& series, Value value);
PartSeries::Column columnOf(Value value);

/// How parts ended.
struct Tally
{
    int found = 0;
    int notFound = 0;
    int refused = 0;

    int parts() const { return found + notFound + refused; }
    /// Found parts in percent of those that the cell accepted; NaN without any. A refused one never was looked at.
    double yield() const;
    void add(PartOutcome outcome);
};

/// Of numbers, those that are not known (NaN) left out.
struct Summary
{
    int count = 0;
    double mean = 0;
    double sigma = 0; ///< of a sample, that is with n - 1; 0 for fewer than two
    double minimum = 0;
    double maximum = 0;
};
Summary summary(const QVector<double>& values);

enum class Span { Hour, Shift, Day };
struct Bucket
{
    qint64 begin = 0; ///< see PartTable for such times
    qint64 end = 0;
    Tally tally;
    Summary cycle;   ///< seconds from a part of a station to its next within the bucket
    Summary replyMs; ///< from trigger to reply
};
/// By time, those without a part between others included. At most as many as `most`: a longer time keeps the last.
/// Cycles take the stations, and times to the reply those, if the series has them.
QVector<Bucket> buckets(const PartSeries& series, Span span, const Shifts& shifts, int most = 20000);

QMap<QString, Tally> byModel(const PartSeries& series);
/// Not found and refused parts by their error code.
QMap<int, int> failuresByError(const PartSeries& series);
/// The same by the angle that was answered: 361 and others that tell why there is none.
QMap<int, int> failuresByAngle(const PartSeries& series);

/// Angles in degrees moved by whole turns next to their mean direction (the direction of the sum of unit vectors), so
/// that 359.9 and 0.1 lie together. Numbers that are not known stay so.
QVector<double> unwrapped(const QVector<double>& degrees);

struct Histogram
{
    double first = 0; ///< where the first bin begins
    double width = 0; ///< of each; 0 when there is no value
    QVector<int> counts;
    Summary summary;
    /// The normal distribution of the summary, in parts a bin.
    double normal(double value) const;
};
/// With as many bins as the rule of Freedman and Diaconis asks for (width 2 IQR n^(-1/3)), 1 to `most`.
Histogram histogram(const QVector<double>& values, int most = 100);

/// Limits that a user sets; NaN for none.
struct Tolerance
{
    double lower = qQNaN();
    double upper = qQNaN();
};
/// ISO 22514-2: Cp = (U - L) / 6 sigma, Cpk = min(U - mean, mean - L) / 3 sigma, with the sigma of the sample. NaN
/// where a limit is missing or nothing scatters.
struct Capability
{
    double cp = qQNaN();
    double cpk = qQNaN();
    int outside = 0; ///< values beyond a limit
};
Capability capability(const QVector<double>& values, const Tolerance& tolerance);

} // namespace Statistics
