#include "V4l2Text.h"

#include <QCoreApplication>

#include <cerrno>
#include <cstring>

namespace {

struct V4l2
{
    Q_DECLARE_TR_FUNCTIONS(V4l2)
};

} // namespace

QString v4l2Problem(const char* call, int error)
{
    switch (error) {
    case ENODEV:
    case ENXIO:
    case ENOENT:
        return V4l2::tr("USB 相机不在：检查插头和电源");
    case EBUSY:
        return V4l2::tr("USB 相机正被其他程序使用：请先关闭该程序");
    case EACCES:
    case EPERM:
        return V4l2::tr("没有使用 USB 相机的权限：把运行程序的用户加入 video 组，然后重新登录");
    case ENOSPC:
        return V4l2::tr("USB 带宽不够：把相机接到另一个 USB 控制器，或减小图像，或选 MJPG 格式");
    case EIO:
    case EPROTO:
    case EPIPE:
    case ETIMEDOUT:
        return V4l2::tr("USB 传输出错：检查线缆和集线器，线缆不要过长");
    case ENOMEM:
        return V4l2::tr("内存不够，不能接收图像");
    case ENOTTY:
        return V4l2::tr("设备不是可用的 USB 相机（%1）").arg(QLatin1String(call));
    default:
        return V4l2::tr("USB 相机出错：%1，%2").arg(QLatin1String(call), QString::fromLocal8Bit(std::strerror(error)));
    }
}

QString v4l2FormatName(quint32 fourcc)
{
    QString name;
    for (int byte = 0; byte < 4; ++byte)
        name += QLatin1Char(char(fourcc >> 8 * byte & 0x7F)); // the highest bit only says big-endian
    return name.trimmed();
}
