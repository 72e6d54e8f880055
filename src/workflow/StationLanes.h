#pragma once

#include "common/Background.h"

#include <QtGlobal>

#include <functional>

class Scheduler;

/// A thread for each station, for the calls into modules that allow it: one that does not return holds up its own
/// station alone. GUI thread; nothing waits but the destructor, for the calls in hand.
class StationLanes
{
public:
    /// `scheduler` outlives it.
    explicit StationLanes(const Scheduler& scheduler);

    /// Makes a call in the station's lane, after those before; dropped if its turn does not come by then.
    void run(int station, qint64 untilNs, std::function<void()> call);

private:
    const Scheduler& m_scheduler;
    Background m_first{Background::AtEnd::Wait};
    Background m_second{Background::AtEnd::Wait};
};
