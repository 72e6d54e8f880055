// Whether a soak sees what went wrong: a balance of few parts, spoiled in every way, and a short soak of the real
// program.

#include "Balance.h"
#include "RecordsAudit.h"
#include "support/Table.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

/// Parts by letters, a second from each to the next, on station 1: "a" is answered with an angle and "n" with none, "k"
/// waits when the program is killed, "c" when the line is cut, "o" for ever; "!" is an answer to nobody, "h" an answer
/// whose notice does not come.
TriggerLedger played(const QByteArray& parts)
{
    TriggerLedger ledger;
    qint64 ms = 0;
    for (const char part : parts) {
        const PlcFrames::Answer answer{part == 'a' ? static_cast<double>(ms) / 1000 : 361.0, 1, 2};
        if (part != '!')
            ledger.sent(1, ms, ms * 1000000);
        if (part == 'k')
            ledger.killed({});
        else if (part == 'c')
            ledger.cut();
        else if (part != 'o')
            ledger.answered(1, answer, ms * 1000000);
        if (part == 'n')
            ledger.noticed(1);
        ms += 1000;
    }
    return ledger;
}

/// Rows as they would be, by numbers of parts; "7x" is one of other values.
QVector<RecordedRow> rowsOf(const QByteArray& parts, const QByteArray& numbers)
{
    QVector<RecordedRow> rows;
    for (const QByteArray& text : numbers.simplified().split(' ')) {
        if (text.isEmpty())
            continue;
        const int number = QByteArray(text).replace('x', "").toInt();
        const double angle = parts[number] == 'a' ? number : 361.0;
        rows.append({1, number * 1000 + 40, {angle + (text.endsWith('x') ? 0.5 : 0.0004), 1, 2}, true, {}});
    }
    return rows;
}

} // namespace

class SoakTest : public QObject
{
    Q_OBJECT

private slots:
    void balanceSeesEveryDifference_data()
    {
        Table::of<QByteArray, QByteArray, QByteArray>(
            {{"all is well", "aanaa", "0 1 2 3 4", ""},
             {"row lost", "aanaa", "0 1 3 4", "lost 1"},
             {"row twice", "aana", "0 1 1 2 3", "strange 1"},
             {"row before any part", "aa", "0 0 1", "strange 1"},
             {"row of other values", "aanaa", "0 1x 2 3 4", "lost 1 strange 1"},
             {"row of a part that nobody answered", "ao", "0 1", "unanswered 1"},
             {"answered twice", "aa!", "0 1", "strays 1"},
             {"no notice", "ah", "0 1", "unnoticed 1"},
             {"killed with a part in hand", "aakaa", "0 1 3 4", ""},
             {"and recorded it", "aakaa", "0 1 2 3 4", ""},
             {"killed between answer and row", "aakaa", "0 3 4", ""},
             {"one more is lost", "aaakaa", "0 4 5", "lost 1"},
             {"and the next answer is the same", "nkn", "2", ""},
             {"line cut", "aacaa", "0 1 2 3 4", ""},
             {"a cut line loses no row", "aacaa", "0 2 3 4", "lost 1"},
             {"cut and killed together", "aackaka", "0 1 4 6", ""}});
    }
    void balanceSeesEveryDifference()
    {
        const auto [parts, rows, wrong] = Table::row<QByteArray, QByteArray, QByteArray>();
        const Balance balance = Balance::of(played(parts), rowsOf(parts, rows));
        QByteArray found;
        const auto add = [&found](const char* name, int count) {
            if (count > 0)
                found += QByteArray(name) + ' ' + QByteArray::number(count) + ' ';
        };
        add("unanswered", balance.unanswered);
        add("strays", balance.strays);
        add("unnoticed", balance.unnoticed);
        add("lost", balance.lostRows);
        add("strange", balance.strangeRows);
        QCOMPARE(found.trimmed(), wrong);
        QCOMPARE(balance.isZero(), wrong.isEmpty());
    }

    void refusalsOfAnOverrunAnswerTheNewest()
    {
        TriggerLedger ledger;
        for (int ms = 0; ms < 4; ++ms)
            ledger.sent(1, ms, ms);
        for (const double angle : {999.0, 999.0, 10.0, 20.0})
            QVERIFY(ledger.answered(1, {angle, 0, 0}, 100));
        QByteArray order;
        for (const SentTrigger& trigger : ledger.all())
            order += QByteArray::number(trigger.sentMs);
        QCOMPARE(order, QByteArray("2301"));
    }

    void killsAndCutsOfTheRealProgramBalance_data()
    {
        Table::of<bool, QByteArray>({{"as it is", false, "virtual"},
                                     {"with network cameras", false, "gige"},
                                     {"a row deleted", true, "virtual"}});
    }
    void killsAndCutsOfTheRealProgramBalance()
    {
        const auto [spoil, cameras] = Table::row<bool, QByteArray>();
        const QTemporaryDir folder;
        const QString json = folder.filePath("soak.json");
        QStringList arguments{"--hours", "0.0056", "--faults", "kill,cut,camera", "--json", json};
        if (spoil)
            arguments = QStringList{"--hours", "0.001", "--faults", "none", "--spoil", "--json", json};
        arguments << "--cameras" << QString::fromLatin1(cameras);
        QCOMPARE(QProcess::execute(VALVECELL_BIN_DIR "/soak", arguments), spoil ? 1 : 0);
        QFile file(json);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QJsonObject report = QJsonDocument::fromJson(file.readAll()).object();
        QVERIFY(report["answered"].toInt() > 0);
        QCOMPARE(report["rows_lost"].toInt(), spoil ? 1 : 0);
        const QJsonObject faults = report["faults"].toObject();
        QVERIFY(spoil || faults["kill"].toInt() + faults["cut"].toInt() + faults["camera"].toInt() > 3);
    }
};

QTEST_GUILESS_MAIN(SoakTest)
#include "tst_soak.moc"
