#pragma once

#include "results/data/ControlChart.h"
#include "results/data/LogReader.h"
#include "results/data/Statistics.h"

#include <QCoreApplication>

class ResultPlot;

/// The charts, by what they are made of.
class Charts
{
    Q_DECLARE_TR_FUNCTIONS(Charts)

public:
    enum Kind { Yield, Cycle, ByModel, Trend, Scatter, Distribution, Control, Failures };

    struct Question
    {
        Kind kind = Yield;
        Statistics::Value value = Statistics::Angle;
        Statistics::Span span = Statistics::Span::Hour;
        Statistics::Tolerance tolerance;
        Shifts shifts;
    };
    /// All numbers of one chart, computed on a thread.
    struct Answer
    {
        Question question;
        QVector<Statistics::Bucket> buckets;
        QMap<QString, Statistics::Tally> models;
        QVector<qint64> uids;
        QVector<qint64> walls;
        QVector<double> values; ///< of found parts, in the order of time; angles next to their mean direction
        QVector<double> others; ///< y beside x
        Statistics::Histogram histogram;
        Statistics::Capability capability;
        ControlChart control;
        QMap<int, int> byError;
        QMap<int, int> byAngle;
    };
    /// What an answer needs of the parts.
    static PartSeries::Columns columnsFor(const Question& question);
    static Answer answer(const PartSeries& series, const Question& question);

    /// `marks`: changes of calibrations and models, for charts along time. `lower` is for the kinds with two charts.
    static void show(const Answer& answer, const QVector<LogRow>& marks, ResultPlot* plot, ResultPlot* lower);

    static QString nameOf(Kind kind);
    static bool needsValue(Kind kind) { return kind == Trend || kind == Distribution || kind == Control; }
    static bool hasLower(Kind kind) { return kind == Control; }
    static bool needsSpan(Kind kind) { return kind == Yield || kind == Cycle; }

private:
    static void showYield(const Answer& answer, ResultPlot* plot);
    static void showCycle(const Answer& answer, ResultPlot* plot);
    static void showModels(const Answer& answer, ResultPlot* plot);
    static void showTrend(const Answer& answer, ResultPlot* plot);
    static void showScatter(const Answer& answer, ResultPlot* plot);
    static void showDistribution(const Answer& answer, ResultPlot* plot);
    static void showControl(const Answer& answer, ResultPlot* plot);
    static void showRanges(const Answer& answer, ResultPlot* plot);
    static void showFailures(const Answer& answer, ResultPlot* plot);
    static void showMarks(const QVector<LogRow>& marks, ResultPlot* plot);
    static QString ruleNames(ControlChart::Rules rules);
};
