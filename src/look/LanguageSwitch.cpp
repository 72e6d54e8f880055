#include "look/LanguageSwitch.h"

#include "config/ksSysConfig.h"
#include "look/Catalogue.h"
#include "platform/AppHome.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QSet>
#include <QTranslator>

#include <algorithm>

namespace {

const QString sourceLanguage = QStringLiteral("Chinese");
//: This translation's own language, by its own name, such as English, Deutsch or Русский.
const char* const sourceName = QT_TRANSLATE_NOOP("LanguageSwitch", "中文");

/// The places of the language folders; later ones win.
QStringList places()
{
    QStringList places{QCoreApplication::applicationDirPath() + QStringLiteral("/language"),
                       platform::programFolder() + QStringLiteral("/language"),
                       platform::inHome(QStringLiteral("/language"))};
    places.removeDuplicates();
    return places;
}

/// What the files of a language gave.
struct Catalogues
{
    std::vector<std::unique_ptr<Catalogue>> loaded; ///< later ones win
    QStringList refused;                            ///< paths of files that are no translation

    explicit Catalogues(const QString& language)
    {
        if (language.isEmpty())
            return;
        const QStringList roots = places();
        for (const QString& root : roots)
            loadFolder(root + QLatin1Char('/') + language);
    }

    bool hasTexts() const
    {
        return std::any_of(loaded.begin(), loaded.end(), [](const auto& one) { return !one->isEmpty(); });
    }

    /// The language's own name for itself; empty when it does not say.
    QString ownName() const
    {
        QString locale;
        for (auto one = loaded.rbegin(); one != loaded.rend(); ++one) {
            const QString name = (*one)->translate("LanguageSwitch", sourceName);
            if (!name.isEmpty())
                return name;
            if (locale.isEmpty())
                locale = (*one)->language();
        }
        return locale.isEmpty() ? QString() : QLocale(locale).nativeLanguageName();
    }

private:
    void loadFolder(const QString& path)
    {
        const QDir::Filters filters = QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot;
        const QFileInfoList entries = QDir(path).entryInfoList(filters, QDir::DirsFirst);
        for (const QFileInfo& entry : entries) {
            if (entry.isDir()) {
                loadFolder(entry.filePath());
                continue;
            }
            // Kept: every file is tried, whatever its suffix; what is no translation does not load.
            auto catalogue = std::make_unique<Catalogue>();
            if (catalogue->read(entry.filePath()))
                loaded.push_back(std::move(catalogue));
            else
                refused.append(QDir::toNativeSeparators(entry.filePath()));
        }
    }
};

QSet<QString> languageFolders()
{
    QSet<QString> names;
    const QStringList roots = places();
    for (const QString& root : roots) {
        const QStringList folders = QDir(root).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        names.unite({folders.begin(), folders.end()});
    }
    names.remove(sourceLanguage);
    return names;
}

/// A few of the files are enough to recognise what the folder holds.
QString notOffered(const QString& language, const QStringList& files)
{
    constexpr int named = 3;
    const QString some =
        files.isEmpty() ? QStringLiteral("nothing is in it") : files.mid(0, named).join(QStringLiteral(", "));
    return QStringLiteral("language folder %1 is not offered, it holds no translation that loads: %2")
        .arg(language, some);
}

void reportOnce(const QString& sentence)
{
    static QSet<QString> reported;
    if (reported.contains(sentence))
        return;
    reported.insert(sentence);
    qWarning("%s", qUtf8Printable(sentence));
}

} // namespace

LanguageSwitch::LanguageSwitch() = default;
LanguageSwitch::~LanguageSwitch() = default;

QMap<QString, QString> LanguageSwitch::available()
{
    QMap<QString, QString> captions{{sourceLanguage, QString::fromUtf8(sourceName)}};
    const QSet<QString> names = languageFolders();
    for (const QString& name : names) {
        const Catalogues catalogues(name);
        const QString ownName = catalogues.ownName();
        if (catalogues.hasTexts())
            captions.insert(name, ownName.isEmpty() ? name : ownName);
        else
            reportOnce(notOffered(name, catalogues.refused));
    }
    return captions;
}

void LanguageSwitch::apply(const QString& language)
{
    m_translators.clear();
    Catalogues catalogues(language);
    for (auto& translator : catalogues.loaded) {
        if (QCoreApplication::installTranslator(translator.get()))
            m_translators.push_back(std::move(translator));
    }
    for (const QString& path : qAsConst(catalogues.refused)) {
        if (path.endsWith(QLatin1String(".qm")))
            reportOnce(QStringLiteral("language %1: %2 holds no translation").arg(language, path));
    }
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
