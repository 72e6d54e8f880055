#pragma once

#include "World.h"

namespace Simulation {

/// Runs a plan in a fresh folder.
World::Outcome runPlan(const Plan& plan, const QString& folder);

/// The shortest plan that breaks a rule as `plan` does: steps go, and what goes wrong in those that stay, as long as
/// some rule still breaks.
Plan shrunken(Plan plan, const QString& folder);

} // namespace Simulation
