#pragma once

#include <QString>

#include <memory>
#include <vector>

class QTranslator;

/// Installs the translations of one language, in place of the one before. GUI thread.
class LanguageSwitch
{
public:
    LanguageSwitch();
    ~LanguageSwitch();

    /// Loads every file below "/language/" + `language`, of the application's directory first, then of the home, so
    /// that a plant's own texts win. A language without such a folder is the source's own.
    void apply(const QString& language);
    /// Applies it, and keeps it as the language of the next start.
    void choose(const QString& language);

private:
    void loadFolder(const QString& path);

    std::vector<std::unique_ptr<QTranslator>> m_translators;
};
