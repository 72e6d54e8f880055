#include "host/LanguageSwitch.h"

#include "config/ksSysConfig.h"
#include "platform/AppHome.h"

#include <QCoreApplication>
#include <QDir>
#include <QTranslator>

LanguageSwitch::LanguageSwitch() = default;
LanguageSwitch::~LanguageSwitch() = default;

void LanguageSwitch::apply(const QString& language)
{
    m_translators.clear();
    const QString below = QStringLiteral("/language/") + language;
    const QString shipped = QCoreApplication::applicationDirPath() + below;
    const QString own = platform::inHome(below);
    loadFolder(shipped);
    if (own != shipped)
        loadFolder(own);
}

void LanguageSwitch::choose(const QString& language)
{
    apply(language);
    ksSysConfig& settings = *ksSysConfig::instance();
    if (settings.language == language)
        return;
    settings.language = language;
    settings.save();
}

void LanguageSwitch::loadFolder(const QString& path)
{
    const QDir::Filters filters = QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot;
    const QFileInfoList entries = QDir(path).entryInfoList(filters, QDir::DirsFirst);
    for (const QFileInfo& entry : entries) {
        if (entry.isDir()) {
            loadFolder(entry.filePath());
            continue;
        }
        // Kept: every file is tried, whatever its suffix; what is no translation does not load.
        auto translator = std::make_unique<QTranslator>();
        if (translator->load(entry.filePath()) && QCoreApplication::installTranslator(translator.get()))
            m_translators.push_back(std::move(translator));
    }
}
