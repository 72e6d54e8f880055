// Whoever changes a name, a code or a frame is told which guide still says otherwise.

#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "finder/FindResult.h"
#include "finder/HoleModel.h"
#include "support/TempHome.h"
#include "wire/FrameCodec.h"

#include <valvecell/HomeFiles.h>

#include <QSettings>

namespace {

QString textOf(const QString& below)
{
    QFile file(QStringLiteral(SOURCE_DIR "/") + below);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList captures(const QString& text, const char* pattern)
{
    const QRegularExpression expression(QLatin1String(pattern), QRegularExpression::MultilineOption);
    QStringList found;
    for (auto it = expression.globalMatch(text); it.hasNext();)
        found.append(it.next().captured(1));
    return found;
}

/// The name under which the guides tell of a key that comes once for each station or point.
QString explainedAs(QString key)
{
    key.replace(QRegularExpression(QStringLiteral("(?<=^pixpoint|^Realpoint)\\d_[xy]$")), QStringLiteral("1_x"));
    return key.replace(QRegularExpression(QStringLiteral("_2$")), QStringLiteral("_1"));
}

} // namespace

class GuidesTest : public QObject
{
    Q_OBJECT

private:
    static void bothLanguages(const char* guide)
    {
        QTest::addColumn<QString>("text");
        for (const char* language : {"", ".zh-CN"}) {
            const QString file = QStringLiteral("docs/%1%2.md").arg(QLatin1String(guide), QLatin1String(language));
            QTest::newRow(qPrintable(file)) << textOf(file);
        }
    }
    /// Names that the text does not show as code.
    static QString unexplained(const QString& text, const QStringList& names)
    {
        QStringList missing;
        for (const QString& name : names)
            if (!text.contains('`' + name + '`'))
                missing.append(name);
        return missing.join(QStringLiteral(", "));
    }

private slots:
    void framesOfTheGuideAreTakenByTheSerialModule_data() { bothLanguages("commissioning"); }
    void framesOfTheGuideAreTakenByTheSerialModule()
    {
        QFETCH(QString, text);
        wire::FrameDecoder decoder;
        QVector<SComFrame> frames;
        const QStringList lines = captures(text, "^([0-9A-F]{2}( [0-9A-F]{2}){23})$");
        for (const QString& line : lines)
            decoder.feed(QByteArray::fromHex(line.toLatin1()), [&](const SComFrame& frame) { frames.append(frame); });
        QCOMPARE(decoder.badBytes(), 0ULL);
        QCOMPARE(frames.size(), 6);
        const QVector<QVector<qint16>> words{
            {3, 7, 0, 0, 0, 0, 0, 0},   {5, 0, 0, 0, 0, 0, 0, 0},  {0, 0, 123, 456, 60, 250, -2, -500},
            {0, 0, 999, 0, 0, 0, 0, 0}, {7, 50, 0, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 0, 200, 80}};
        for (int i = 0; i < frames.size(); ++i) {
            QCOMPARE(char(frames[i].command), "CPFGHC"[i]);
            QCOMPARE(QVector<qint16>(frames[i].data, frames[i].data + 8), words[i]);
        }
    }

    void everyKeyOfTheSetUpIsExplained_data() { bothLanguages("commissioning"); }
    void everyKeyOfTheSetUpIsExplained()
    {
        QFETCH(QString, text);
        const TempHome home;
        QVERIFY(ksGlobalConfig().save());
        QVERIFY(ksSysConfig().save());
        const auto written = HomeFiles::readJson(home.path("/user/globalConfig.json")).object;
        QStringList keys = written.keys() + written["station2_4p"].toObject().keys();
        QVERIFY(keys.size() > 40);
        std::transform(keys.begin(), keys.end(), keys.begin(), explainedAs);
        const QStringList settings = QSettings(home.path("/user/systemConfig.ini"), QSettings::IniFormat).allKeys();
        QCOMPARE(settings.size(), 13);
        for (const QString& setting : settings)
            keys << '[' + setting.section('/', 0, 0) + ']' << setting.section('/', 1);
        QCOMPARE(unexplained(text, keys), QString());
    }

    void everyParameterOfAModelIsExplained_data() { bothLanguages("commissioning"); }
    void everyParameterOfAModelIsExplained()
    {
        QFETCH(QString, text);
        QCOMPARE(unexplained(text, finder::parametersOf(finder::HoleModel()).keys()), QString());
    }

    void errorCodesAreListedWithTheirTips_data() { bothLanguages("module-guide"); }
    void errorCodesAreListedWithTheirTips()
    {
        QFETCH(QString, text);
        int code = 0;
        for (QString tip; !(tip = finder::resultTip(finder::FindError(code))).isEmpty(); ++code) {
            const QString row = QStringLiteral("| %1 | %2 |").arg(code).arg(tip);
            QVERIFY2(text.contains(row), qPrintable(row));
        }
        QVERIFY(code > int(finder::FindError::BadModel));
    }

    void moduleGuideKnowsEveryNameOfTheSdk_data() { bothLanguages("module-guide"); }
    void moduleGuideKnowsEveryNameOfTheSdk()
    {
        QFETCH(QString, text);
        QStringList names = captures(textOf("include/valvecell/ResultKeys.h"), "= \"(\\w+)\";");
        QVERIFY(names.size() >= 18);
        const QStringList headers = QDir(SOURCE_DIR "/include/valvecell").entryList({"*.h"});
        for (const QString& header : headers) {
            const QString source = textOf("include/valvecell/" + header);
            names += captures(source, "\\bid = \"(valvecell\\.[^\"]+)\"");
            names += captures(source, "^/// .*[Mm]odule file \"(\\w+)\"");
            names += captures(source, "[Ss]ymbols? .*\"(\\w+)\"");
        }
        QCOMPARE(unexplained(text, names), QString());
    }
};

QTEST_GUILESS_MAIN(GuidesTest)
#include "tst_guides.moc"
