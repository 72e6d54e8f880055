#include "plant/BrokerLogin.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStringList>

std::optional<BrokerLogin> BrokerLogin::read(const QString& file, QString* error)
{
    const auto fail = [&](const char* why) {
        *error = QCoreApplication::translate("Plant", why).arg(QDir::toNativeSeparators(file));
        return std::nullopt;
    };
    QFile input(file);
    if (!input.open(QIODevice::ReadOnly))
        return fail(QT_TRANSLATE_NOOP("Plant", "无法读取登录文件 %1，请检查路径和权限"));
    constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    if (input.permissions() & others)
        return fail(QT_TRANSLATE_NOOP("Plant", "登录文件 %1 能被他人读取，请只给本程序的用户读权限（chmod 600）"));
    const QStringList lines = QString::fromUtf8(input.read(4096)).split(QLatin1Char('\n'));
    if (lines.size() < 2 || lines[0].trimmed().isEmpty() || lines[1].trimmed().isEmpty())
        return fail(QT_TRANSLATE_NOOP("Plant", "登录文件 %1 须有两行：用户名和密码"));
    return BrokerLogin{lines[0].trimmed(), lines[1].trimmed()};
}
