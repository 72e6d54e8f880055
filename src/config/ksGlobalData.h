#pragma once

#include "config/ks_singleton_base.h"

#include <atomic>

/// Run-time flags shared by the window and the workflow; nothing of it is stored.
class ksGlobalData : public ks_singleton_base<ksGlobalData>
{
public:
    std::atomic<bool> registered{false}; ///< the licence check passed
};
