#pragma once

#include <QString>
#include <QVector>

#include <chrono>

/// The system calls by which Video4Linux devices are driven, so that a test can stand in for the kernel. Errors are
/// codes of errno. Calls that a signal interrupts are repeated. One thread for each descriptor.
class V4l2System
{
public:
    /// A video device as the system lists it; texts of the USB device behind it, empty where it says nothing.
    struct Node
    {
        QString path; ///< for example "/dev/video0"
        QString vendor;
        QString model;
        QString serial;
    };
    enum class Wait { Nothing, Ready, Broken };

    virtual ~V4l2System() = default;

    /// In the order of their numbers.
    virtual QVector<Node> nodes() = 0;
    /// A descriptor whose calls do not block; the negative error when it cannot be opened.
    virtual int open(const QString& path) = 0;
    virtual void close(int descriptor) = 0;
    /// An ioctl; 0 or its error.
    virtual int control(int descriptor, unsigned long request, void* argument) = 0;
    /// Null when it cannot be mapped.
    virtual void* map(int descriptor, size_t length, quint32 offset) = 0;
    virtual void unmap(void* start, size_t length) = 0;
    /// Waits until a buffer can be taken; Broken: none will come.
    virtual Wait wait(int descriptor, std::chrono::milliseconds time) = 0;

    /// The kernel's.
    static V4l2System& kernel();
};
