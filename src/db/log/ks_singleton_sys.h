#pragma once

#include "config/ks_singleton_base.h"

namespace SystemLog {

/// The one instance of the system log for the whole process; see ks_singleton_base.
template <typename T>
class ks_singleton_sys : public ks_singleton_base<T>
{
};

} // namespace SystemLog
