#include "AravisStream.h"

#include <algorithm>

namespace {

constexpr size_t queueLength = 3;
constexpr int buffersAtStart = 6;
constexpr int maxBuffers = 24; ///< lent ones included
constexpr std::chrono::milliseconds slice(50);

/// The library notes the first packet by the clock of the day, which may be set at any time; so only the frame's age is
/// taken from it.
AravisStream::Clock::time_point begin(ArvBuffer* buffer)
{
    const auto age = std::chrono::microseconds(g_get_real_time()) -
                     std::chrono::nanoseconds(arv_buffer_get_system_timestamp(buffer));
    return AravisStream::Clock::now() - std::max(age, std::chrono::nanoseconds(0));
}

} // namespace

/// The buffers of a stream, which images may still use when the stream is gone.
struct AravisStream::Pool
{
    explicit Pool(size_t payloadSize)
        : payload(payloadSize)
    {
    }

    void add()
    {
        if (!stream || buffers == maxBuffers)
            return;
        ++buffers;
        arv_stream_push_buffer(stream, arv_buffer_new_allocate(payload));
    }
    void giveBack(ArvBuffer* buffer)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (stream)
            arv_stream_push_buffer(stream, buffer);
        else
            g_object_unref(buffer);
    }

    const size_t payload; ///< bytes
    std::mutex mutex;     // protects the two below
    ArvStream* stream = nullptr;
    int buffers = 0;
};

struct AravisStream::Loan
{
    std::shared_ptr<Pool> pool;
    ArvBuffer* buffer;

    static void end(void* loan)
    {
        const std::unique_ptr<Loan> ended(static_cast<Loan*>(loan));
        ended->pool->giveBack(ended->buffer);
    }
};

AravisStream::AravisStream(size_t payload)
    : m_pool(std::make_shared<Pool>(payload))
{
}

std::unique_ptr<AravisStream> AravisStream::start(ArvCamera* camera, QString* problem)
{
    GErrorHolder error;
    const guint payload = arv_camera_get_payload(camera, &error);
    std::unique_ptr<AravisStream> stream(new AravisStream(payload));
    if (!error)
        stream->m_pool->stream = arv_camera_create_stream(camera, onFrame, stream.get(), &error);
    if (ARV_IS_GV_STREAM(stream->m_pool->stream)) // ask for all that is missing: part of a picture is of no use
        g_object_set(stream->m_pool->stream, "packet-request-ratio", 1.0, nullptr);
    if (stream->m_pool->stream) {
        const std::lock_guard<std::mutex> lock(stream->m_pool->mutex);
        for (int i = 0; i < buffersAtStart; ++i)
            stream->m_pool->add();
        arv_camera_start_acquisition(camera, &error);
    }
    if (!error && stream->m_pool->stream)
        return stream;
    *problem = error ? QString::fromUtf8(error->message) : QStringLiteral("no stream");
    return nullptr;
}

AravisStream::~AravisStream()
{
    ArvStream* stream = nullptr;
    {
        const std::lock_guard<std::mutex> lock(m_pool->mutex);
        stream = std::exchange(m_pool->stream, nullptr);
    }
    if (stream)
        g_object_unref(stream); // frees the buffers that it has
    for (const Frame& frame : m_queue)
        g_object_unref(frame.buffer);
}

void AravisStream::onFrame(void* self, ArvStreamCallbackType type, ArvBuffer* buffer)
{
    if (type == ARV_STREAM_CALLBACK_TYPE_BUFFER_DONE)
        static_cast<AravisStream*>(self)->take(buffer);
}

/// On the library's thread. What the stream has ready is this very buffer.
void AravisStream::take(ArvBuffer* done)
{
    ArvBuffer* oldest = nullptr;
    {
        const std::lock_guard<std::mutex> poolLock(m_pool->mutex);
        if (m_pool->stream)
            done = arv_stream_try_pop_buffer(m_pool->stream);
        if (!m_pool->stream || !done)
            return;
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_queue.push_back({done, begin(done)});
        if (m_queue.size() > queueLength) {
            oldest = m_queue.front().buffer;
            m_queue.pop_front();
        }
    }
    m_arrived.notify_one();
    if (oldest)
        giveBack(oldest);
}

void AravisStream::clear()
{
    std::deque<Frame> old;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        old.swap(m_queue);
    }
    for (const Frame& frame : old)
        giveBack(frame.buffer);
}

AravisStream::Frame AravisStream::wait(Clock::time_point begun, Clock::time_point until,
                                       const std::atomic<bool>& cancelled)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        while (!m_queue.empty()) {
            const Frame frame = m_queue.front();
            m_queue.pop_front();
            if (frame.begun >= begun)
                return frame;
            lock.unlock();
            giveBack(frame.buffer);
            lock.lock();
        }
        const auto now = Clock::now();
        if (cancelled || now >= until)
            return {};
        m_arrived.wait_until(lock, std::min(until, now + slice));
    }
}

void AravisStream::giveBack(ArvBuffer* buffer)
{
    m_pool->giveBack(buffer);
}

/// While images are kept, the stream gets further buffers up to a limit; beyond it the image is a copy.
QImage AravisStream::lend(ArvBuffer* buffer)
{
    gint inputs = 0, outputs = 0;
    bool copies = false;
    {
        const std::lock_guard<std::mutex> lock(m_pool->mutex);
        arv_stream_get_n_buffers(m_pool->stream, &inputs, &outputs);
        copies = inputs < buffersAtStart / 2 && m_pool->buffers == maxBuffers;
        if (inputs < buffersAtStart / 2)
            m_pool->add();
    }
    size_t size = 0;
    const auto* data = static_cast<const uchar*>(arv_buffer_get_image_data(buffer, &size));
    gint padding = 0, ignored = 0;
    arv_buffer_get_image_padding(buffer, &padding, &ignored);
    const int width = arv_buffer_get_image_width(buffer), height = arv_buffer_get_image_height(buffer);
    const QImage image(data, width, height, width + padding, QImage::Format_Grayscale8, Loan::end,
                       new Loan{m_pool, buffer});
    return copies ? image.copy() : image;
}

quint64 AravisStream::info(const char* name) const
{
    const std::lock_guard<std::mutex> lock(m_pool->mutex);
    return m_pool->stream ? arv_stream_get_info_uint64_by_name(m_pool->stream, name) : 0;
}
