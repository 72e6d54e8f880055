#pragma once

namespace SystemLog {

/// While it lives, warnings and errors of the debug stream, of the program and of its modules alike, are lines of the
/// system log too; whoever handled the stream before goes on handling it. One at a time; made and destroyed on the GUI
/// thread, lines may come from any.
class WarningForward
{
public:
    WarningForward();
    ~WarningForward();
    WarningForward(const WarningForward&) = delete;
    WarningForward& operator=(const WarningForward&) = delete;
};

} // namespace SystemLog
