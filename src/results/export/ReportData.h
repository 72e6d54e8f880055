#pragma once

#include "results/data/LogReader.h"
#include "results/data/PartFilter.h"
#include "results/data/Shifts.h"
#include "results/data/Statistics.h"

#include <functional>

/// All numbers of a report over a span of time. Read and used on one thread.
struct ReportData
{
    struct Span
    {
        QString title;    ///< "2026-03-31 早班"
        qint64 begin = 0; ///< see PartTable for such times
        qint64 end = 0;   ///< not included

        static Span of(const Shifts& shifts, const Shifts::Shift& shift);
        /// A day, that is all its shifts.
        static Span day(const Shifts& shifts, const Shifts::Shift& oneOfIt);
    };
    struct Line
    {
        int station = 0;
        QString model;
        Statistics::Tally tally;
    };
    /// One alarm or change; what comes again is counted only.
    struct Event
    {
        LogRow row;
        int times = 1;
    };

    /// How the found parts of a model lie within the limits that are set for it.
    struct Fit
    {
        QString model;
        Statistics::Value value = Statistics::Angle;
        Statistics::Tolerance tolerance;
        Statistics::Summary summary;
        Statistics::Capability capability;
    };

    static constexpr int mostFailures = 1000;
    static constexpr int mostEvents = 500;

    Span span;
    QString cell; ///< what the heading calls it
    QString logo; ///< a picture's path; empty for none
    QVector<Line> lines;
    Statistics::Tally total;
    PartSeries found;  ///< columns of the found parts alone
    QVector<Fit> fits; ///< by model and value
    QVector<Statistics::Bucket> buckets;
    Statistics::Span bucketSpan = Statistics::Span::Hour;
    Statistics::Summary cycle; ///< seconds; means of the buckets
    Statistics::Summary replyMs;
    QVector<QPair<QString, int>> reasons; ///< the most frequent first
    QVector<PartRow> failures;            ///< the first ones, in the order of time
    int failureCount = 0;
    QVector<Event> events;
    int eventCount = 0;
    QString error; ///< why nothing could be read; a sentence

    /// `goOn` is asked now and then, and false ends it.
    static ReportData read(const QString& home, const Span& span, const QString& cell,
                           const std::function<bool()>& goOn);
};
