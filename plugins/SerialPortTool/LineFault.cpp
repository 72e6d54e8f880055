#include "LineFault.h"

#include "PortName.h"

#include <QCoreApplication>

namespace {

struct FaultTexts
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
        return FaultTexts::tr("波特率“%1”不对：应为大于0的整数，例如115200").arg(subject);
    case NoDevice:
        return FaultTexts::tr("没有设备%1：检查转换器是否插好，或在系统设置中另选端口").arg(subject);
    case NoPermission:
        return FaultTexts::tr("没有权限打开%1：把运行程序的用户加入dialout组，然后重新登录").arg(subject);
    case Busy:
        return FaultTexts::tr("%1正被另一个程序使用：关闭那个程序").arg(subject);
    case NotOpened:
        return FaultTexts::tr("%1打不开（%2）：检查它是不是串口").arg(subject, reason);
    case Lost:
        return FaultTexts::tr("%1的线路断了：检查电缆和转换器的供电").arg(subject);
    case UnknownHost:
        return FaultTexts::tr("找不到主机%1：检查名称和DNS，或改用IP地址").arg(subject);
    case Refused:
        return FaultTexts::tr("%1拒绝连接：检查端口号，串口服务器应为TCP服务器模式且没有被占用").arg(subject);
    case Unreachable:
        return FaultTexts::tr("网络到不了%1：检查网线、IP地址和子网掩码").arg(subject);
    case NoAnswer:
        return FaultTexts::tr("%1没有应答：检查它的供电、网线和IP地址").arg(subject);
    }
    return {};
}
