#pragma once

#include <QMap>
#include <QString>

#include <memory>
#include <vector>

class QTranslator;

/// The languages of the program, and the translations of the one that it speaks. Translations lie below "/language/" of
/// the application's directory and of the home, a folder for each language, which is named as its folder. GUI thread.
class LanguageSwitch
{
public:
    LanguageSwitch();
    ~LanguageSwitch();

    /// The languages that there are at the moment, by folder, each with the name by which who reads only that one finds
    /// it: what its translation says for "中文", else its locale's name, else the folder's. "Chinese", the source's
    /// own, is always among them. A folder without a translation is not; the log says once which, and which files it
    /// holds.
    static QMap<QString, QString> available();

    /// Loads every file below the language's folder, of the application's directory first, then of the home, so that a
    /// plant's own texts win. A language without such a folder is the source's own. Translations that do not load are
    /// named in the log.
    void apply(const QString& language);
    /// Applies it, and keeps it as the language of the next start.
    void choose(const QString& language);

private:
    std::vector<std::unique_ptr<QTranslator>> m_translators;
};
