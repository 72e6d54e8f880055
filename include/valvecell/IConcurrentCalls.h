#pragma once

/// Optional interface of a core control or an engine, a promise without operations: ICoreCtrl::trigger() and
/// ICameraCapture::capture(), or IEngine::runTask(), may be called on any thread, several at a time for different
/// cameras or solutions, and while the GUI thread calls anything else. The program then calls them on a thread of each
/// station, so that a call that does not return holds up its own station instead of the whole program.
///
/// Calls of one station come one after the other, in the order of its triggers. None comes once the program has begun
/// to call stop(), or to delete the engine.
class IConcurrentCalls
{
public:
    static constexpr const char* id = "valvecell.IConcurrentCalls/1";

protected:
    ~IConcurrentCalls() = default;
};
