#include "Harness.h"
#include "look/LanguageSwitch.h"

#include <QCoreApplication>
#include <QDir>

FUZZ_TARGET(language)
{
    static const bool made = QDir(fuzz::home()).mkpath(QStringLiteral("language/X"));
    fuzz::require(made, "the harness can make its folder");
    fuzz::homeFile("/language/X/x.qm", bytes);
    fuzz::require(LanguageSwitch::available().contains(QStringLiteral("Chinese")), "the source's language is there");
    LanguageSwitch language;
    language.apply(QStringLiteral("X"));
    for (const char* text : {"中文", "确定", "%n 个", "a"})
        QCoreApplication::translate("LanguageSwitch", text, nullptr, 2);
}
