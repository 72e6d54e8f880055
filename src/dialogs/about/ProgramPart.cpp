#include "dialogs/about/ProgramPart.h"

#include "db/SqlConnection.h"

#include <QCoreApplication>
#include <QVariant>

#include <opencv2/core/utility.hpp>

namespace {

QString sqliteVersion()
{
    SqlConnection memory(QStringLiteral("QSQLITE"));
    memory.database().setDatabaseName(QStringLiteral(":memory:"));
    if (!memory.database().open())
        return {};
    QSqlQuery answer = memory.exec(QStringLiteral("SELECT sqlite_version()"));
    return answer.next() ? answer.value(0).toString() : QString();
}

QString text(const char* source)
{
    return QCoreApplication::translate("QAboutUI", source);
}

} // namespace

QVector<ProgramPart> programParts()
{
    return {
        {QStringLiteral("ValveCell"),
         QStringLiteral(VALVECELL_VERSION),
         text(QT_TRANSLATE_NOOP("QAboutUI", "气门芯定位检测系统")),
         QStringLiteral("MIT"),
         {}},
        {QStringLiteral("Qt"), QString::fromLatin1(qVersion()),
         text(QT_TRANSLATE_NOOP("QAboutUI", "界面、数据库、串口")), QStringLiteral("LGPL-3.0"),
         QStringLiteral("https://www.qt.io/licensing")},
        {QStringLiteral("OpenCV"), QString::fromStdString(cv::getVersionString()),
         text(QT_TRANSLATE_NOOP("QAboutUI", "图像处理")), QStringLiteral("Apache-2.0"),
         QStringLiteral("https://opencv.org/license")},
        {QStringLiteral("SQLite"), sqliteVersion(), text(QT_TRANSLATE_NOOP("QAboutUI", "结果、型号、日志的数据库")),
         text(QT_TRANSLATE_NOOP("QAboutUI", "公有领域")), QStringLiteral("https://sqlite.org")},
        {QStringLiteral("libjpeg"),
         {},
         text(QT_TRANSLATE_NOOP("QAboutUI", "图像存档")),
         QStringLiteral("IJG, BSD-3-Clause"),
         QStringLiteral("https://libjpeg-turbo.org")},
        {QStringLiteral("libsodium"),
         {},
         text(QT_TRANSLATE_NOOP("QAboutUI", "密码保护")),
         QStringLiteral("ISC"),
         QStringLiteral("https://doc.libsodium.org")},
        {QStringLiteral("OpenSSL"),
         {},
         text(QT_TRANSLATE_NOOP("QAboutUI", "授权签名")),
         QStringLiteral("Apache-2.0"),
         QStringLiteral("https://www.openssl.org")},
    };
}
