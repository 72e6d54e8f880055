#include "Plan.h"

namespace Simulation {
namespace {

/// A choice by weights.
template <typename Kind>
struct Weighted
{
    Kind kind;
    int weight;
};

template <typename Kind, int count>
Kind pick(Random& random, const Weighted<Kind> (&choices)[count])
{
    int sum = 0;
    for (const auto& choice : choices)
        sum += choice.weight;
    int left = random.below(sum);
    for (const auto& choice : choices) {
        left -= choice.weight;
        if (left < 0)
            return choice.kind;
    }
    return choices[0].kind;
}

constexpr Weighted<Step::Kind> kinds[] = {
    {Step::Part, 700},  {Step::Models, 90},  {Step::Noise, 20},   {Step::Cut, 25},  {Step::Stray, 25},
    {Step::Disk, 25},   {Step::Clock, 10},   {Step::Setting, 40}, {Step::Edit, 45}, {Step::Snap, 25},
    {Step::Restart, 5}, {Step::PowerCut, 6}, {Step::Calm, 12}};
constexpr Weighted<Picture> pictures[] = {{Picture::Good, 80},   {Picture::Late, 4},    {Picture::Lost, 3},
                                          {Picture::Null, 3},    {Picture::Refused, 3}, {Picture::Throws, 1},
                                          {Picture::Doubled, 4}, {Picture::Foreign, 2}};
constexpr Weighted<Answer> answers[] = {{Answer::Good, 75},         {Answer::NothingFound, 6}, {Answer::Late, 3},
                                        {Answer::Lost, 2},          {Answer::Doubled, 4},      {Answer::NoSolution, 1},
                                        {Answer::OtherSolution, 2}, {Answer::TextAngle, 1},    {Answer::NotANumber, 1},
                                        {Answer::FarAway, 1},       {Answer::NotTaught, 2},    {Answer::NoTask, 1},
                                        {Answer::Throws, 1}};

/// `storm`: whether pictures and answers go wrong at present.
Step stepOf(Random& random, bool storm)
{
    Step step;
    step.kind = pick(random, kinds);
    step.station = random.between(1, 2);
    step.value = random.below(1000);
    step.ms = random.chance(15) ? -1 : random.chance(70) ? random.between(100, 400) : random.between(0, 1500);
    if (step.kind == Step::Disk)
        step.what = random.below(diskFaults);
    if (step.kind == Step::Setting)
        step.what = random.below(settings);
    if (step.kind == Step::Edit)
        step.what = random.below(edits);
    if (step.kind == Step::Calm || step.kind == Step::Restart || step.kind == Step::PowerCut)
        step.ms = random.below(50);
    step.pictureMs = random.between(1, 150);
    step.answerMs = random.between(0, 200);
    if (storm) {
        step.picture = pick(random, pictures);
        step.answer = pick(random, answers);
    }
    return step;
}

const char* const pictureTexts[] = {"good",    "late",          "lost",    "null",
                                    "refused", "driver throws", "doubled", "another's first"};
const char* const answerTexts[] = {"good",        "nothing found",  "late",         "lost",      "doubled",
                                   "no solution", "other solution", "text angle",   "NaN angle", "far away",
                                   "not taught",  "no task",        "engine throws"};
const char* const diskTexts[] = {"full",        "read-only",         "broken",          "database locked by another",
                                 "folder gone", "database replaced", "database deleted"};
const char* const settingTexts[] = {"online",          "protection",        "filter", "deadline",
                                    "cameras swapped", "solutions swapped", "saving", "cleaning"};
const char* const editTexts[] = {"add model", "remove model", "rename model", "change index"};

QString withStation(const char* text, int station)
{
    return QStringLiteral("%1 %2").arg(QLatin1String(text)).arg(station);
}

QString action(const Step& step)
{
    switch (step.kind) {
    case Step::Part:
        return QStringLiteral("trigger of station %1: picture %2 (%3 ms), answer %4 (%5 ms)")
            .arg(step.station)
            .arg(QLatin1String(pictureTexts[int(step.picture)]))
            .arg(step.pictureMs)
            .arg(QLatin1String(answerTexts[int(step.answer)]))
            .arg(step.answerMs);
    case Step::Models:
        return QStringLiteral("model indices, choice %1").arg(step.value);
    case Step::Noise:
        return QStringLiteral("frame that means nothing, choice %1").arg(step.value);
    case Step::Cut:
        return QStringLiteral("line cut, back after %1 ms").arg(step.value);
    case Step::Stray:
        return withStation("picture that nobody asked for, camera", step.station);
    case Step::Disk:
        return QStringLiteral("disk: %1 for %2 ms").arg(QLatin1String(diskTexts[step.what])).arg(step.value * 10);
    case Step::Clock:
        return QStringLiteral("clock set, choice %1").arg(step.value);
    case Step::Setting:
        return QStringLiteral("setting: %1, choice %2").arg(QLatin1String(settingTexts[step.what])).arg(step.value);
    case Step::Edit:
        return QStringLiteral("%1, choice %2").arg(QLatin1String(editTexts[step.what])).arg(step.value);
    case Step::Snap:
        return withStation("test picture of station", step.station);
    case Step::Restart:
        return QStringLiteral("restart");
    case Step::PowerCut:
        return QStringLiteral("power cut, choice %1").arg(step.value);
    case Step::Calm:
        break;
    }
    return QStringLiteral("all faults end, and a part of each station");
}

} // namespace

quint64 Random::next()
{
    quint64 z = (m_state += 0x9e3779b97f4a7c15u);
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
    return z ^ (z >> 31);
}

QString Step::text() const
{
    const QString then = ms < 0 ? QStringLiteral("; the next at once") : QStringLiteral("; %1 ms pass").arg(ms);
    return action(*this) + then;
}

Plan Plan::of(quint64 seed, int steps)
{
    Random random(seed);
    Plan plan;
    plan.seed = seed;
    plan.numbered = random.chance(50);
    plan.saves = random.chance(20);
    plan.deadlineMs = random.chance(50) ? 2000 : 500;
    bool storm = false;
    for (int i = 0; i < steps; ++i) {
        if (i % 25 == 0)
            storm = random.chance(60);
        plan.steps << stepOf(random, storm);
    }
    return plan;
}

QStringList Plan::text() const
{
    QStringList lines{QStringLiteral("seed %1: cameras %2 numbers, pictures %3, deadline %4 ms")
                          .arg(seed)
                          .arg(QLatin1String(numbered ? "with" : "without"))
                          .arg(QLatin1String(saves ? "saved" : "not saved"))
                          .arg(deadlineMs)};
    for (int i = 0; i < steps.size(); ++i)
        lines << QStringLiteral("%1  %2").arg(i + 1, 4).arg(steps[i].text());
    return lines;
}

} // namespace Simulation
