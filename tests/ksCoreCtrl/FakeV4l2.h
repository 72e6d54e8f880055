#pragma once

#include "device/v4l2/V4l2System.h"

#include <QMap>

#include <cerrno>
#include <deque>
#include <linux/videodev2.h>
#include <vector>

/// A kernel with USB cameras, which answers as its documentation says of each call. Frames come when a test has put
/// them into `frames`; a camera that is not `there` answers ENODEV to all.
struct FakeV4l2 final : V4l2System
{
    using Clock = std::chrono::steady_clock;

    struct Frame
    {
        Clock::time_point stamp;
        QByteArray data;
        quint32 sequence = 0;
        quint32 flags = 0;
        int error = 0; ///< of VIDIOC_DQBUF
    };
    struct Control
    {
        v4l2_queryctrl query;
        qint32 value;
        QStringList items;
    };

    // The camera that is opened.
    Node node{"/dev/video0", "Vendor", "Webcam", "S1"};
    QVector<Node> others; ///< which deliver pictures, too
    QString metadataNode{"/dev/video1"};
    bool there = true;
    QMap<unsigned long, int> errors; ///< by request; for as long as they stand
    int openError = 0;
    QVector<quint32> formats{V4L2_PIX_FMT_MJPEG, V4L2_PIX_FMT_YUYV, V4L2_PIX_FMT_GREY};
    quint32 forcedFormat = 0; ///< that a driver takes whatever is asked
    QSize size{32, 16};       ///< the largest
    quint32 stampFlags = V4L2_BUF_FLAG_TIMESTAMP_MONOTONIC | V4L2_BUF_FLAG_TSTAMP_SRC_SOE;
    QVector<Control> controls;
    std::deque<Frame> frames;

    // What became of it.
    int opened = 0;
    int mapped = 0;
    bool streaming = false;
    std::deque<quint32> queue; ///< buffers that the device may fill
    QStringList openedPaths;
    v4l2_pix_format format{};

    static constexpr quint32 bufferBytes = 65536;
    std::vector<std::vector<uchar>> memory = std::vector<std::vector<uchar>>(4, std::vector<uchar>(bufferBytes));

    QVector<Node> nodes() override
    {
        QVector<Node> all = others;
        if (there) {
            all.prepend({metadataNode, node.vendor, node.model, node.serial});
            all.prepend(node);
        }
        return all;
    }
    int open(const QString& path) override
    {
        int found = path == node.path && there ? 10 : path == metadataNode && there ? 11 : -ENOENT;
        for (int i = 0; i < others.size(); ++i)
            found = path == others[i].path ? 20 + i : found;
        if (found < 0 || openError)
            return found < 0 ? found : -openError;
        ++opened;
        openedPaths << path;
        return found;
    }
    void close(int) override
    {
        --opened;
        streaming = false;
    }
    void* map(int, size_t, quint32 offset) override
    {
        ++mapped;
        return memory[offset].data();
    }
    void unmap(void*, size_t) override { --mapped; }
    Wait wait(int, std::chrono::milliseconds) override
    {
        return !there || !streaming ? Wait::Broken : frames.empty() || queue.empty() ? Wait::Nothing : Wait::Ready;
    }

    int control(int descriptor, unsigned long request, void* argument) override
    {
        if (!there && descriptor < 20)
            return ENODEV;
        if (errors.contains(request))
            return errors[request];
        switch (request) {
        case VIDIOC_QUERYCAP:
            return capability(descriptor, static_cast<v4l2_capability*>(argument));
        case VIDIOC_ENUM_FMT: {
            auto* listed = static_cast<v4l2_fmtdesc*>(argument);
            if (int(listed->index) >= formats.size())
                return EINVAL;
            listed->pixelformat = formats[int(listed->index)];
            return 0;
        }
        case VIDIOC_ENUM_FRAMESIZES: {
            auto* listed = static_cast<v4l2_frmsizeenum*>(argument);
            listed->type = V4L2_FRMSIZE_TYPE_DISCRETE;
            listed->discrete = {quint32(size.width()) / (listed->index == 0 ? 2 : 1), quint32(size.height())};
            return listed->index < 2 ? 0 : EINVAL;
        }
        case VIDIOC_G_FMT:
            static_cast<v4l2_format*>(argument)->fmt.pix = format;
            return 0;
        case VIDIOC_S_FMT:
            return setFormat(&static_cast<v4l2_format*>(argument)->fmt.pix);
        case VIDIOC_G_PARM:
            static_cast<v4l2_streamparm*>(argument)->parm.capture.timeperframe = {1, 100};
            return 0;
        case VIDIOC_REQBUFS:
            if (streaming || (static_cast<v4l2_requestbuffers*>(argument)->count == 0 && mapped > 0))
                return EBUSY;
            queue.clear();
            return 0;
        case VIDIOC_STREAMON:
            streaming = true;
            return 0;
        case VIDIOC_STREAMOFF:
            streaming = false;
            queue.clear();
            return 0;
        case VIDIOC_QUERYBUF:
        case VIDIOC_QBUF:
        case VIDIOC_DQBUF:
            return buffer(request, static_cast<v4l2_buffer*>(argument));
        case VIDIOC_QUERYCTRL:
            return query(static_cast<v4l2_queryctrl*>(argument));
        case VIDIOC_QUERYMENU: {
            auto* item = static_cast<v4l2_querymenu*>(argument);
            const QString text = find(item->id)->items.value(int(item->index));
            qstrncpy(reinterpret_cast<char*>(item->name), text.toLatin1(), sizeof item->name);
            return text.isEmpty() ? EINVAL : 0;
        }
        case VIDIOC_G_CTRL:
        case VIDIOC_S_CTRL:
            return access(request, static_cast<v4l2_control*>(argument));
        }
        return ENOTTY;
    }

    Control* find(quint32 id)
    {
        for (Control& one : controls) {
            if (one.query.id == id)
                return &one;
        }
        return nullptr;
    }
    void add(quint32 id, quint32 type, const char* name, qint32 low, qint32 high, qint32 value, quint32 flags = 0,
             const QStringList& items = {})
    {
        Control control{{}, value, items};
        control.query.id = id;
        control.query.type = type;
        qstrncpy(reinterpret_cast<char*>(control.query.name), name, sizeof control.query.name);
        control.query.minimum = low;
        control.query.maximum = high;
        control.query.flags = flags;
        controls.append(control);
    }

private:
    int capability(int descriptor, v4l2_capability* said) const
    {
        qstrncpy(reinterpret_cast<char*>(said->card), "Webcam", sizeof said->card);
        const QByteArray port = "usb-1-" + QByteArray::number(descriptor);
        qstrncpy(reinterpret_cast<char*>(said->bus_info), port, sizeof said->bus_info);
        said->capabilities = V4L2_CAP_DEVICE_CAPS | V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_STREAMING;
        said->device_caps = V4L2_CAP_STREAMING | (descriptor == 11 ? V4L2_CAP_META_CAPTURE : V4L2_CAP_VIDEO_CAPTURE);
        return 0;
    }
    int setFormat(v4l2_pix_format* wanted)
    {
        if (mapped > 0)
            return EBUSY;
        if (forcedFormat || !formats.contains(wanted->pixelformat))
            wanted->pixelformat = forcedFormat ? forcedFormat : formats.first();
        wanted->width = quint32(std::min(int(wanted->width), size.width()));
        wanted->height = quint32(std::min(int(wanted->height), size.height()));
        const quint32 bytes = wanted->pixelformat == V4L2_PIX_FMT_GREY ? 1 : 2;
        wanted->bytesperline = wanted->pixelformat == V4L2_PIX_FMT_MJPEG ? 0 : wanted->width * bytes + 8;
        format = *wanted;
        return 0;
    }
    int buffer(unsigned long request, v4l2_buffer* buffer)
    {
        if (request == VIDIOC_QUERYBUF) {
            buffer->m.offset = buffer->index;
            buffer->length = bufferBytes;
            buffer->flags = stampFlags;
            return 0;
        }
        if (request == VIDIOC_QBUF) {
            queue.push_back(buffer->index);
            return 0;
        }
        if (frames.empty() || queue.empty())
            return streaming ? EAGAIN : EINVAL;
        const Frame frame = frames.front();
        frames.pop_front();
        if (frame.error)
            return frame.error;
        buffer->index = queue.front();
        queue.pop_front();
        buffer->flags = stampFlags | frame.flags;
        buffer->sequence = frame.sequence;
        buffer->bytesused = quint32(frame.data.size());
        const auto time = std::chrono::duration_cast<std::chrono::microseconds>(frame.stamp.time_since_epoch()).count();
        buffer->timestamp = {time / 1000000, time % 1000000};
        std::copy(frame.data.begin(), frame.data.end(), memory[buffer->index].begin());
        return 0;
    }
    int query(v4l2_queryctrl* query)
    {
        const quint32 wanted = query->id & ~V4L2_CTRL_FLAG_NEXT_CTRL;
        for (const Control& one : qAsConst(controls)) { // in the order of their ids
            const bool next = query->id & V4L2_CTRL_FLAG_NEXT_CTRL && one.query.id > wanted;
            if (!next && one.query.id != query->id)
                continue;
            *query = one.query;
            return 0;
        }
        return EINVAL;
    }
    int access(unsigned long request, v4l2_control* access)
    {
        Control* found = find(access->id);
        if (!found)
            return EINVAL;
        const quint32 forbids = request == VIDIOC_S_CTRL ? V4L2_CTRL_FLAG_READ_ONLY : V4L2_CTRL_FLAG_WRITE_ONLY;
        if (found->query.flags & forbids)
            return EACCES;
        if (request == VIDIOC_G_CTRL) {
            access->value = found->value;
            return 0;
        }
        if (access->value < found->query.minimum || access->value > found->query.maximum)
            return ERANGE;
        found->value = access->value;
        return 0;
    }
};
