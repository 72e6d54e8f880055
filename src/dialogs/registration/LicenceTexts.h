#pragma once

#include "licence/Licence.h"

/// What a verdict on a licence means to the operator, in his language. GUI thread.
namespace LicenceTexts {

/// Customer, stations and end of a licence.
QString content(const Licence& licence);

/// Why a licence does not count, and what to do; empty for one that does.
QString refusal(const LicenceVerdict& verdict);

} // namespace LicenceTexts
