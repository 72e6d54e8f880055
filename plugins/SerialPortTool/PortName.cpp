#include "PortName.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QRegularExpression>

#include <algorithm>

namespace {

struct NameTexts
{
    Q_DECLARE_TR_FUNCTIONS(PortName)
};

const QLatin1String prefix("tcp:");

/// The parts of "tcp:HOST:PORT" as typed.
struct TcpText
{
    QString host;
    QString port;
    bool bracketed = false;
};

QString tcpText(const QString& text)
{
    const QString plain = text.normalized(QString::NormalizationForm_KC).trimmed();
    return plain.startsWith(prefix, Qt::CaseInsensitive) ? plain : QString();
}

/// The last colon parts host and port; what has none is all host.
TcpText split(const QString& tcp)
{
    static const QRegularExpression form(QStringLiteral("^tcp:\\s*(\\[([^]]*)\\]|.*?)\\s*(?::\\s*([^:\\]]*))?$"),
                                         QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = form.match(tcp);
    const bool bracketed = match.capturedStart(2) >= 0;
    return {match.captured(bracketed ? 2 : 1).trimmed(), match.captured(3).trimmed(), bracketed};
}

quint16 portFrom(const QString& text)
{
    const bool digits = std::all_of(text.begin(), text.end(), [](QChar letter) { return letter.isDigit(); });
    return digits ? text.toUShort() : quint16(0);
}

/// Digits and dots alone are an address, of which there must be four parts: the system would take fewer for others.
QString hostProblem(const TcpText& text)
{
    static const QRegularExpression number(QStringLiteral("^[\\d.]+$"));
    static const QRegularExpression address(QStringLiteral("^((25[0-5]|2[0-4]\\d|1?\\d?\\d)(\\.(?!$)|$)){4}$"));
    static const QRegularExpression name(QStringLiteral("^[\\w](?:[\\w.-]*[\\w.])?$"),
                                         QRegularExpression::UseUnicodePropertiesOption);
    if (text.host.isEmpty())
        return NameTexts::tr("缺少主机名或IP地址");
    if (text.bracketed)
        return QHostAddress(text.host).protocol() == QAbstractSocket::IPv6Protocol
                   ? QString()
                   : NameTexts::tr("方括号中的“%1”不是IPv6地址").arg(text.host);
    if (text.host.contains(QLatin1Char(':')))
        return NameTexts::tr("IPv6地址要放在方括号中");
    if (number.match(text.host).hasMatch() ? !address.match(text.host).hasMatch() : !name.match(text.host).hasMatch())
        return NameTexts::tr("“%1”不是主机名或IP地址").arg(text.host);
    return {};
}

} // namespace

PortName PortName::from(const QString& text)
{
    const QString tcp = tcpText(text);
    if (tcp.isEmpty())
        return {text.trimmed(), {}, 0};
    const TcpText parts = split(tcp);
    return {tcp, parts.host, hostProblem(parts).isEmpty() ? portFrom(parts.port) : quint16(0)};
}

QString PortName::problemOf(const QString& text)
{
    if (text.trimmed().isEmpty())
        return NameTexts::tr("没有端口名：例如 COM3、/dev/ttyUSB0 或 tcp:192.168.1.50:4001");
    const QString tcp = tcpText(text);
    if (tcp.isEmpty())
        return {};
    const TcpText parts = split(tcp);
    QString problem = hostProblem(parts);
    if (problem.isEmpty() && parts.port.isEmpty())
        problem = NameTexts::tr("缺少端口号");
    else if (problem.isEmpty() && portFrom(parts.port) == 0)
        problem = NameTexts::tr("端口号“%1”不在1到65535之间").arg(parts.port);
    return problem.isEmpty() ? QString() : NameTexts::tr("%1：%2，应写成 tcp:192.168.1.50:4001 这样").arg(tcp, problem);
}
