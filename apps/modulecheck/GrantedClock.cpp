#include "GrantedClock.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

constexpr microseconds tick{2000};
constexpr microseconds longestTick{4000}; // what exceeds it was taken by others

/// Wakes again and again, as anything of the process would that has something to do.
class Ticker
{
public:
    Ticker()
    {
        std::thread([this] { run(); }).detach(); // ends with the process
    }
    qint64 ms() const { return m_granted / 1000; }

private:
    [[noreturn]] void run()
    {
        for (;;) {
            const Clock::time_point before = Clock::now();
            std::this_thread::sleep_for(tick);
            m_granted += std::min(std::chrono::duration_cast<microseconds>(Clock::now() - before), longestTick).count();
        }
    }

    std::atomic<qint64> m_granted{0}; ///< microseconds
};

} // namespace

qint64 GrantedClock::ms()
{
    static const auto* const ticker = new Ticker;
    return ticker->ms();
}
