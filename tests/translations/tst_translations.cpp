#include "host/ViewMenu.h"
#include "look/LanguageSwitch.h"
#include "support/Table.h"
#include "support/TempHome.h"

namespace {

struct Text
{
    QString context;
    QString source;
    QString comment;
};

/// All texts that the sources in a folder show, as they stand today.
QVector<Text> textsOf(const QString& folder)
{
    const QTemporaryDir place;
    const QString path = place.filePath(QStringLiteral("texts.ts"));
    QProcess reader;
    reader.start(QStringLiteral(VALVECELL_LUPDATE),
                 {"-silent", "-locations", "none", QStringLiteral(VALVECELL_SOURCE_DIR "/") + folder, "-ts", path});
    QFile file(path);
    if (!reader.waitForFinished(60000) || !file.open(QIODevice::ReadOnly))
        return {};
    QVector<Text> texts;
    QString context;
    for (QXmlStreamReader xml(&file); !xml.atEnd(); xml.readNext()) {
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("name"))
            context = xml.readElementText();
        else if (xml.name() == QLatin1String("source"))
            texts.append({context, xml.readElementText(), {}});
        else if (xml.name() == QLatin1String("comment"))
            texts.last().comment = xml.readElementText();
    }
    return texts;
}

/// What is to be filled in, and the letter that a shortcut underlines: the same in every language.
QString marksOf(const QString& text)
{
    QStringList marks;
    static const QRegularExpression places(QStringLiteral("%L?\\d|%n"));
    for (auto it = places.globalMatch(text); it.hasNext();)
        marks << it.next().captured();
    marks.sort();
    static const QRegularExpression shortcut(QStringLiteral("&(?!&)\\S"));
    return marks.join(' ') + (shortcut.match(text).hasMatch() ? QStringLiteral(" &") : QString());
}

QString faultOf(const Text& text)
{
    static const QRegularExpression han(QStringLiteral("\\p{Han}"));
    const QString shown = QCoreApplication::translate(text.context.toUtf8(), text.source.toUtf8(),
                                                      text.comment.isEmpty() ? nullptr : qUtf8Printable(text.comment));
    if (shown.contains(han))
        return QStringLiteral("no translation for “%2” of %1").arg(text.context, text.source);
    if (marksOf(shown) != marksOf(text.source))
        return QStringLiteral("%1: “%2” and “%3” differ in their marks").arg(text.context, text.source, shown);
    return {};
}

/// A compiled translation into `locale`, of one text.
QByteArray compiled(const QByteArray& locale, const QByteArray& context, const QByteArray& source,
                    const QByteArray& translation)
{
    const QTemporaryDir place;
    QFile catalogue(place.filePath(QStringLiteral("one.ts")));
    QFile result(place.filePath(QStringLiteral("one.qm")));
    const QByteArray language = locale.isEmpty() ? QByteArray() : " language=\"" + locale + '"';
    const QByteArray text = "<?xml version=\"1.0\" encoding=\"utf-8\"?><!DOCTYPE TS><TS version=\"2.1\"" + language +
                            "><context><name>" + context + "</name><message><source>" + source +
                            "</source><translation" + (translation.isEmpty() ? " type=\"unfinished\">" : ">") +
                            translation + "</translation></message></context></TS>";
    if (!catalogue.open(QIODevice::WriteOnly) || catalogue.write(text) != text.size())
        return {};
    catalogue.close();
    QProcess::execute(QStringLiteral(VALVECELL_LRELEASE), {"-silent", catalogue.fileName(), "-qm", result.fileName()});
    return result.open(QIODevice::ReadOnly) ? result.readAll() : QByteArray();
}

QString menuTitle()
{
    return QCoreApplication::translate("ViewMenu", "语言外观");
}

} // namespace

class TranslationsTest : public QObject
{
    Q_OBJECT

private slots:
    /// A language whose own script is Chinese needs another mark of a missing text.
    void everyTextIsThereInEachLanguage_data()
    {
        Table::columns<QString, QString, int>();
        const QDir folders(QStringLiteral(VALVECELL_SOURCE_DIR "/translations"));
        for (const QString& language : folders.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            for (const auto& [part, fewest] :
                 {std::pair("src", 300), std::pair("include", 10), std::pair("apps/report", 4),
                  std::pair("plugins/ksCoreCtrl", 15), std::pair("plugins/SerialPortTool", 15),
                  std::pair("plugins/QUserInfo", 50), std::pair("plugins/ksbengine", 30),
                  std::pair("plugins/ksdesigner", 150)})
                QTest::addRow("%s of %s", qPrintable(language), part) << language << part << fewest;
        }
    }
    void everyTextIsThereInEachLanguage()
    {
        const auto [language, part, fewest] = Table::row<QString, QString, int>();
        const QVector<Text> texts = textsOf(part);
        QVERIFY2(texts.size() >= fewest, "the sources were not read");
        LanguageSwitch languages;
        languages.apply(language);
        QStringList faults;
        for (const Text& text : texts)
            faults << faultOf(text);
        faults.removeAll(QString());
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join('\n')));
    }

    void folderOfTranslationsIsALanguage_data()
    {
        const QByteArray german = compiled("de_DE", "ViewMenu", "语言外观", "Ansicht");
        const QByteArray nameless = compiled({}, "ViewMenu", "语言外观", "Look");
        QVERIFY(!german.isEmpty() && !nameless.isEmpty());
        Table::of<QByteArray, QByteArray, QString>(
            {{"says its own name", "own.qm", compiled("en_GB", "LanguageSwitch", "中文", "Plattdüütsch"),
              "Plattdüütsch"},
             {"named by its locale", "one.qm", german, "Deutsch"},
             {"named by its folder", "one.qm", nameless, "Place"},
             {"any suffix, any depth", "more/of it/one.txt", german, "Deutsch"},
             {"text file", "readme.txt", "to be done", {}},
             {"cut off", "one.qm", german.chopped(20), {}},
             {"nothing translated", "one.qm", compiled("de_DE", "ViewMenu", "语言外观", {}), {}},
             {"empty file", "one.qm", {}, {}}});
    }
    void folderOfTranslationsIsALanguage()
    {
        const auto [file, content, caption] = Table::row<QByteArray, QByteArray, QString>();
        const TempHome home;
        home.write("/language/Place/" + file, content);
        const bool loads = QTest::currentDataTag() != QByteArray("nothing translated");
        if (caption.isEmpty())
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("language folder Place .*" + (loads ? file : "")));
        const QMap<QString, QString> offered = LanguageSwitch::available();
        QCOMPARE(offered.value("Place"), caption);
        QCOMPARE(offered.contains("Place"), !caption.isEmpty());
        QCOMPARE(offered["Chinese"] + ' ' + offered["English"], QStringLiteral("中文 English"));
    }

    void languageThatComesWhileTheProgramRunsIsInTheMenu()
    {
        const TempHome home;
        ViewMenu menu;
        menu.setLanguage("Deutsch");
        home.write("/language/Deutsch/one.qm", compiled("de_DE", "ViewMenu", "语言外观", "Ansicht"));
        emit menu.aboutToShow();
        QString chosen;
        connect(&menu, &ViewMenu::sgChangeLanguage, [&](const QString& language) { chosen = language; });
        QStringList checked;
        for (QAction* action : menu.actions()) {
            if (action->isChecked())
                checked << action->text();
            if (action->text() == "Deutsch")
                action->trigger();
        }
        QCOMPARE(checked.value(0), QStringLiteral("Deutsch"));
        QCOMPARE(chosen, QStringLiteral("Deutsch"));
    }

    void plantsOwnTextsWin()
    {
        const TempHome home;
        home.write("/language/English/own.qm", compiled("en", "ViewMenu", "语言外观", "Plant"));
        home.write("/language/English/below/own.qm", compiled("en", "ViewMenu", "语言外观", "Below"));
        home.write("/language/English/spoiled.qm", "no translation");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("language English: .*spoiled.qm"));
        LanguageSwitch languages;
        languages.apply("English");
        QCOMPARE(told(menuTitle(), QCoreApplication::translate("ViewMenu", "浅色")), "Plant|Light");
        languages.apply("Chinese");
        QCOMPARE(menuTitle(), QStringLiteral("语言外观"));
    }
};

QTEST_MAIN(TranslationsTest)
#include "tst_translations.moc"
