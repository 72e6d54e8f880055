#include "support/English.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

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
    const QString english = QCoreApplication::translate(
        text.context.toUtf8(), text.source.toUtf8(), text.comment.isEmpty() ? nullptr : qUtf8Printable(text.comment));
    if (english.contains(han))
        return QStringLiteral("no English for “%2” of %1").arg(text.context, text.source);
    if (marksOf(english) != marksOf(text.source))
        return QStringLiteral("%1: “%2” and “%3” differ in their marks").arg(text.context, text.source, english);
    return {};
}

} // namespace

class TranslationsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyTextIsThereInEnglish_data()
    {
        QTest::addColumn<int>("fewest");
        QTest::newRow("src") << 300;
        QTest::newRow("include") << 10;
        QTest::newRow("plugins/ksCoreCtrl") << 15;
        QTest::newRow("plugins/QUserInfo") << 50;
        QTest::newRow("plugins/ksbengine") << 30;
        QTest::newRow("plugins/ksdesigner") << 150;
    }

    void everyTextIsThereInEnglish()
    {
        QFETCH(int, fewest);
        const QVector<Text> texts = textsOf(QString::fromLatin1(QTest::currentDataTag()));
        QVERIFY2(texts.size() >= fewest, "the sources were not read");
        const English english;
        QVERIFY(english);
        QStringList faults;
        for (const Text& text : texts)
            faults << faultOf(text);
        faults.removeAll(QString());
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join('\n')));
    }
};

QTEST_MAIN(TranslationsTest)
#include "tst_translations.moc"
