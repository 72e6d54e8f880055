#pragma once

#include "../CameraDevice.h"
#include "GObjectPtr.h"

#include <arv.h>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>

/// The frames of one running acquisition.
///
/// The library's thread puts each frame that is through into a short queue; the oldest goes back to be filled again
/// when it is full. So frames that nobody asked for take neither memory nor the place of the next.
class AravisStream
{
public:
    using Clock = std::chrono::steady_clock;
    struct Frame
    {
        ArvBuffer* buffer = nullptr;
        Clock::time_point begun; ///< when its first packet came
    };

    /// Null and a sentence when the camera refuses.
    static std::unique_ptr<AravisStream> start(ArvCamera* camera, QString* problem);
    /// Waits for the library's thread; images that were lent stay good.
    ~AravisStream();

    /// All that came so far goes back.
    void clear();
    /// The first frame that began at that time or later, what came before goes back; none when the time is over.
    Frame wait(Clock::time_point begun, Clock::time_point until, const std::atomic<bool>& cancelled);
    void giveBack(ArvBuffer* buffer);
    /// Takes the frame; the image uses its memory as long as it lives.
    QImage lend(ArvBuffer* buffer);

    quint64 lostPackets() const { return info("n_missing_packets"); }
    quint64 resentPackets() const { return info("n_resent_packets"); }

private:
    struct Pool;
    struct Loan;

    explicit AravisStream(size_t payload);
    static void onFrame(void* self, ArvStreamCallbackType type, ArvBuffer* buffer);
    void take(ArvBuffer* buffer);
    quint64 info(const char* name) const;

    const std::shared_ptr<Pool> m_pool;
    std::mutex m_mutex; // protects the one below
    std::deque<Frame> m_queue;
    std::condition_variable m_arrived;
};
