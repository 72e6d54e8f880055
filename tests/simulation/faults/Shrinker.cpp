#include "Shrinker.h"

#include <QDir>

namespace Simulation {
namespace {

bool breaks(Plan& plan, const QString& folder)
{
    const World::Outcome outcome = runPlan(plan, folder);
    if (!outcome.broken.isEmpty())
        plan.steps.resize(outcome.step + 1);
    return !outcome.broken.isEmpty();
}

/// Takes `candidate` in the plan's place if it breaks too.
bool take(Plan& plan, Plan candidate, const QString& folder)
{
    if (!breaks(candidate, folder))
        return false;
    plan = candidate;
    return true;
}

void removeSteps(Plan& plan, const QString& folder)
{
    for (int size = qMax(1, plan.steps.size() / 2); size > 0; size /= 2) {
        for (int first = plan.steps.size() - size; first >= 0; first = qMin(first, plan.steps.size()) - size) {
            Plan candidate = plan;
            candidate.steps.remove(first, size);
            take(plan, candidate, folder);
        }
    }
}

void calmSteps(Plan& plan, const QString& folder)
{
    const Step plain;
    for (int i = 0; i < plan.steps.size(); ++i) {
        Plan candidate = plan;
        candidate.steps[i].picture = plain.picture;
        take(plan, candidate, folder);
        candidate = plan;
        if (i >= candidate.steps.size())
            break;
        candidate.steps[i].answer = plain.answer;
        take(plan, candidate, folder);
    }
}

} // namespace

World::Outcome runPlan(const Plan& plan, const QString& folder)
{
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    World world(plan, folder);
    return world.run();
}

Plan shrunken(Plan plan, const QString& folder)
{
    if (!breaks(plan, folder))
        return plan;
    int before = 0;
    do {
        before = plan.steps.size();
        removeSteps(plan, folder);
        calmSteps(plan, folder);
    } while (plan.steps.size() < before);
    return plan;
}

} // namespace Simulation
