#include "LineFault.h"

#include "PortName.h"

#include <QCoreApplication>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(LineFault)
};

} // namespace

QString LineFault::logText() const
{
    static const char* const texts[] = {"",
                                        "no line can have this name",
                                        "no such baud rate",
                                        "no such device",
                                        "permission denied",
                                        "in use by another program",
                                        "",
                                        "the line is lost",
                                        "the host's name is not known",
                                        "connection refused",
                                        "unreachable",
                                        "no answer"};
    return QStringLiteral("%1: %2").arg(subject, kind == NotOpened ? reason : QLatin1String(texts[kind]));
}

QString LineFault::sentence() const
{
    switch (kind) {
    case None:
        break;
    case BadName:
        return PortName::problemOf(subject);
    case BadBaudRate:
        return Tr::tr("波特率“%1”不对：应为大于0的整数，例如115200").arg(subject);
    case NoDevice:
        return Tr::tr("没有设备%1：检查转换器是否插好，或在系统设置中另选端口").arg(subject);
    case NoPermission:
        return Tr::tr("没有权限打开%1：把运行程序的用户加入dialout组，然后重新登录").arg(subject);
    case Busy:
        return Tr::tr("%1正被另一个程序使用：关闭那个程序").arg(subject);
    case NotOpened:
        return Tr::tr("%1打不开（%2）：检查它是不是串口").arg(subject, reason);
    case Lost:
        return Tr::tr("%1的线路断了：检查电缆和转换器的供电").arg(subject);
    case UnknownHost:
        return Tr::tr("找不到主机%1：检查名称和DNS，或改用IP地址").arg(subject);
    case Refused:
        return Tr::tr("%1拒绝连接：检查端口号，串口服务器应为TCP服务器模式且没有被占用").arg(subject);
    case Unreachable:
        return Tr::tr("网络到不了%1：检查网线、IP地址和子网掩码").arg(subject);
    case NoAnswer:
        return Tr::tr("%1没有应答：检查它的供电、网线和IP地址").arg(subject);
    }
    return {};
}
