#include "V4l2System.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

/// A line that the kernel says of a device.
QString attribute(const QString& folder, const char* name)
{
    QFile file(folder + QLatin1Char('/') + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

class KernelCalls final : public V4l2System
{
public:
    QVector<Node> nodes() override
    {
        const QDir devices(QStringLiteral("/sys/class/video4linux"));
        QStringList names = devices.entryList({QStringLiteral("video*")}, QDir::AllEntries | QDir::NoDotAndDotDot);
        const auto number = [](const QString& name) { return name.midRef(5).toInt(); };
        std::sort(names.begin(), names.end(),
                  [number](const QString& a, const QString& b) { return number(a) < number(b); });
        QVector<Node> nodes;
        for (const QString& name : qAsConst(names)) {
            // What the link names is an interface of the USB device, which lies above it.
            const QString interface = QFileInfo(devices.filePath(name + QStringLiteral("/device"))).canonicalFilePath();
            const QString usb = QFileInfo(interface).path();
            nodes.append({QStringLiteral("/dev/") + name, attribute(usb, "manufacturer"), attribute(usb, "product"),
                          attribute(usb, "serial")});
        }
        return nodes;
    }

    int open(const QString& path) override
    {
        const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
        return descriptor < 0 ? -errno : descriptor;
    }

    void close(int descriptor) override { ::close(descriptor); }

    int control(int descriptor, unsigned long request, void* argument) override
    {
        int result;
        do {
            result = ::ioctl(descriptor, request, argument);
        } while (result < 0 && errno == EINTR);
        return result < 0 ? errno : 0;
    }

    void* map(int descriptor, size_t length, quint32 offset) override
    {
        void* start = ::mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, off_t(offset));
        return start == MAP_FAILED ? nullptr : start;
    }

    void unmap(void* start, size_t length) override { ::munmap(start, length); }

    Wait wait(int descriptor, std::chrono::milliseconds time) override
    {
        pollfd polled{descriptor, POLLIN, 0};
        const int result = ::poll(&polled, 1, int(time.count()));
        if (result == 0 || (result < 0 && errno == EINTR))
            return Wait::Nothing;
        return result > 0 && polled.revents & POLLIN ? Wait::Ready : Wait::Broken;
    }
};

} // namespace

V4l2System& V4l2System::kernel()
{
    static KernelCalls calls;
    return calls;
}
