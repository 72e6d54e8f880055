#pragma once

namespace platform {

/// Makes the calling thread yield the processor to the others of the program whenever they want it.
void lowerThreadPriority();

} // namespace platform
