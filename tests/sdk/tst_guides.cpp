// Whoever changes a name, a code or a frame is told which guide still says otherwise.

#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "finder/FindResult.h"
#include "finder/HoleModel.h"
#include "support/TempHome.h"
#include "wire/FrameCodec.h"

#include <valvecell/HomeFiles.h>

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

/// The name under which the guides explain a key that comes once for each station or point.
QString explainedAs(QString key)
{
    key.replace(QRegularExpression(QStringLiteral("(?<=^pixpoint|^Realpoint)\\d_[xy]$")), QStringLiteral("1_x"));
    return key.replace(QRegularExpression(QStringLiteral("_2$")), QStringLiteral("_1"));
}

/// Whether a table has a row that names the key, in its first cell, and a cell with the value.
bool isListed(const QString& text, const QStringList& names, const QVariant& value)
{
    const QStringList wanted = value.toString().isEmpty() ? QStringList{"empty", "空"} : QStringList(value.toString());
    const QStringList rows = text.split('\n').filter(QRegularExpression(QStringLiteral("^\\| `")));
    return std::any_of(rows.begin(), rows.end(), [&](const QString& row) {
        const QStringList cells = row.split(QStringLiteral(" | "));
        const QStringList values = cells.mid(1, 2).join(", ").split(QRegularExpression(QStringLiteral(", |、")));
        return std::all_of(names.begin(), names.end(),
                           [&](const QString& name) { return cells[0].contains('`' + name + '`'); }) &&
               std::any_of(wanted.begin(), wanted.end(), [&](const QString& one) { return values.contains(one); });
    });
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

    void everyKeyOfTheSetUpIsListedWithItsDefault_data() { bothLanguages("commissioning"); }
    void everyKeyOfTheSetUpIsListedWithItsDefault()
    {
        QFETCH(QString, text);
        const TempHome home;
        QVERIFY(ksGlobalConfig().save() && ksSysConfig().save());
        QVector<QPair<QStringList, QVariant>> keys;
        const auto written = HomeFiles::readJson(home.path("/user/globalConfig.json")).object;
        for (const QJsonObject& object : {written, written["station2_4p"].toObject()})
            for (auto it = object.begin(); it != object.end(); ++it)
                keys.append({{explainedAs(it.key())}, it.value().isObject() ? "–" : it.value().toVariant()});
        const QSettings settings(home.path("/user/systemConfig.ini"), QSettings::IniFormat);
        for (const QString& key : settings.allKeys())
            keys.append({{'[' + key.section('/', 0, 0) + ']', key.section('/', 1)}, settings.value(key)});
        QVERIFY(keys.size() > 50);
        QStringList missing;
        for (const auto& [names, value] : qAsConst(keys))
            if (!isListed(text, names, value))
                missing << names.join(' ') + " = " + value.toString();
        QCOMPARE(missing.join('\n'), QString());
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
