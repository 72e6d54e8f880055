#include "V4l2Stream.h"

#include "V4l2Text.h"

#include <cerrno>
#include <linux/videodev2.h>

namespace {

constexpr quint32 buffersWanted = 4;
constexpr quint32 buffersNeeded = 2; // one is filled while another is read
constexpr std::chrono::milliseconds usualPeriod(40);

v4l2_buffer mapped(quint32 index)
{
    v4l2_buffer buffer{};
    buffer.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    buffer.memory = V4L2_MEMORY_MMAP;
    buffer.index = index;
    return buffer;
}

} // namespace

V4l2Stream::V4l2Stream(V4l2System& system, int descriptor)
    : m_system(system)
    , m_descriptor(descriptor)
{
}

/// Buffers that are still mapped would keep the driver from another format.
V4l2Stream::~V4l2Stream()
{
    int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    m_system.control(m_descriptor, VIDIOC_STREAMOFF, &type);
    for (const Buffer& buffer : m_buffers)
        m_system.unmap(buffer.start, buffer.length);
    v4l2_requestbuffers none{};
    none.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    none.memory = V4L2_MEMORY_MMAP;
    m_system.control(m_descriptor, VIDIOC_REQBUFS, &none);
}

QString V4l2Stream::start()
{
    v4l2_requestbuffers request{};
    request.count = buffersWanted;
    request.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    request.memory = V4L2_MEMORY_MMAP;
    if (const int error = m_system.control(m_descriptor, VIDIOC_REQBUFS, &request))
        return v4l2Problem("VIDIOC_REQBUFS", error);
    if (request.count < buffersNeeded)
        return v4l2Problem("VIDIOC_REQBUFS", ENOMEM);
    const QString problem = mapAll(request.count);
    if (!problem.isEmpty())
        return problem;
    m_period = readPeriod();
    int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    const int error = m_system.control(m_descriptor, VIDIOC_STREAMON, &type);
    return error ? v4l2Problem("VIDIOC_STREAMON", error) : QString();
}

QString V4l2Stream::mapAll(quint32 count)
{
    for (quint32 index = 0; index < count; ++index) {
        v4l2_buffer buffer = mapped(index);
        if (const int error = m_system.control(m_descriptor, VIDIOC_QUERYBUF, &buffer))
            return v4l2Problem("VIDIOC_QUERYBUF", error);
        m_hasTimes = (buffer.flags & V4L2_BUF_FLAG_TIMESTAMP_MASK) == V4L2_BUF_FLAG_TIMESTAMP_MONOTONIC;
        void* start = m_system.map(m_descriptor, buffer.length, buffer.m.offset);
        if (!start)
            return v4l2Problem("mmap", ENOMEM);
        m_buffers.push_back({start, buffer.length});
        const QString problem = queue(index);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

QString V4l2Stream::queue(quint32 index)
{
    v4l2_buffer buffer = mapped(index);
    const int error = m_system.control(m_descriptor, VIDIOC_QBUF, &buffer);
    return error ? v4l2Problem("VIDIOC_QBUF", error) : QString();
}

V4l2Stream::Clock::duration V4l2Stream::readPeriod()
{
    v4l2_streamparm parameters{};
    parameters.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    const bool said = m_system.control(m_descriptor, VIDIOC_G_PARM, &parameters) == 0;
    const v4l2_fract& time = parameters.parm.capture.timeperframe;
    if (!said || time.numerator == 0 || time.denominator == 0)
        return usualPeriod;
    return std::chrono::microseconds(1000000LL * time.numerator / time.denominator);
}

V4l2Stream::Clock::time_point V4l2Stream::beginOf(qint64 microseconds, quint32 flags) const
{
    const bool isBeginning = (flags & V4L2_BUF_FLAG_TSTAMP_SRC_MASK) == V4L2_BUF_FLAG_TSTAMP_SRC_SOE;
    const Clock::time_point stamp =
        m_hasTimes ? Clock::time_point(std::chrono::microseconds(microseconds)) : Clock::now();
    return stamp - m_exposure - (m_hasTimes && isBeginning ? Clock::duration(0) : m_period);
}

std::optional<V4l2Stream::Frame> V4l2Stream::take(std::chrono::milliseconds time, QString* problem)
{
    const V4l2System::Wait waited = m_system.wait(m_descriptor, time);
    if (waited == V4l2System::Wait::Nothing)
        return std::nullopt;
    v4l2_buffer buffer = mapped(0);
    const int error = m_system.control(m_descriptor, VIDIOC_DQBUF, &buffer);
    if (error == EAGAIN && waited == V4l2System::Wait::Ready)
        return std::nullopt;
    if (error || buffer.index >= m_buffers.size()) {
        *problem = v4l2Problem("VIDIOC_DQBUF", error && error != EAGAIN ? error : EIO);
        return std::nullopt;
    }
    m_wraps += buffer.sequence < m_lastSequence ? 1 : 0;
    m_lastSequence = buffer.sequence;
    Frame frame;
    frame.index = buffer.index;
    frame.data = static_cast<const uchar*>(m_buffers[buffer.index].start);
    frame.size = std::min<size_t>(buffer.bytesused, m_buffers[buffer.index].length);
    frame.number = (m_wraps << 32) + buffer.sequence;
    frame.damaged = (buffer.flags & V4L2_BUF_FLAG_ERROR) != 0 || frame.size == 0;
    frame.began = beginOf(1000000LL * buffer.timestamp.tv_sec + buffer.timestamp.tv_usec, buffer.flags);
    return frame;
}

QString V4l2Stream::give(const Frame& frame)
{
    return queue(frame.index);
}

QString V4l2Stream::dropOld()
{
    QString problem;
    for (size_t i = 0; !m_hasTimes && i < m_buffers.size() && problem.isEmpty(); ++i) {
        const std::optional<Frame> old = take(std::chrono::milliseconds(0), &problem);
        if (!old)
            break;
        problem = give(*old);
    }
    return problem;
}
