#include "results/charts/Charts.h"

namespace {

/// Of found parts alone: what a part without a hole was answered is no measure.
void takeValues(const PartSeries& series, Charts::Answer& answer)
{
    const bool scatter = answer.question.kind == Charts::Scatter;
    const QVector<double>& values = Statistics::column(series, scatter ? Statistics::X : answer.question.value);
    for (int i = 0; i < series.size(); ++i) {
        if (series.outcome.at(i) != qint8(PartOutcome::Found) || qIsNaN(values.at(i)))
            continue;
        answer.uids.append(series.uid.at(i));
        answer.walls.append(series.wall.at(i));
        answer.values.append(values.at(i));
        if (scatter)
            answer.others.append(series.y.at(i));
    }
    if (!scatter && answer.question.value == Statistics::Angle)
        answer.values = Statistics::unwrapped(answer.values);
}

} // namespace

PartSeries::Columns Charts::columnsFor(const Question& question)
{
    switch (question.kind) {
    case Yield: // whose numbers in a file have the cycle beside them
    case Cycle:
        return PartSeries::Stations | PartSeries::ReplyTimes;
    case ByModel:
        return PartSeries::Models;
    case Scatter:
        return PartSeries::Uids | PartSeries::Xs | PartSeries::Ys;
    case Failures:
        return PartSeries::Errors | PartSeries::Angles;
    case Trend:
    case Distribution:
    case Control:
        break;
    }
    return PartSeries::Uids | Statistics::columnOf(question.value);
}

Charts::Answer Charts::answer(const PartSeries& series, const Question& question)
{
    Answer answer;
    answer.question = question;
    if (needsSpan(question.kind))
        answer.buckets = Statistics::buckets(series, question.span, question.shifts);
    else if (question.kind == ByModel)
        answer.models = Statistics::byModel(series);
    else if (question.kind != Failures)
        takeValues(series, answer);
    if (question.kind == Failures) {
        answer.byError = Statistics::failuresByError(series);
        answer.byAngle = Statistics::failuresByAngle(series);
    }
    if (question.kind == Distribution)
        answer.histogram = Statistics::histogram(answer.values);
    if (question.kind == Distribution || question.kind == Trend)
        answer.capability = Statistics::capability(answer.values, question.tolerance);
    if (question.kind == Control)
        answer.control = ControlChart::of(answer.values);
    return answer;
}
