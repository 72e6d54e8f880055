#include "db/CellError.h"
#include "db/PartTable.h"
#include "db/StationDB.h"
#include "panels/FailurePictures.h"
#include "panels/HourYield.h"
#include "panels/OutcomeBand.h"
#include "panels/OutcomeStrip.h"
#include "panels/PartWords.h"
#include "panels/PictureStamp.h"
#include "panels/ReadoutTile.h"
#include "panels/ShiftLine.h"
#include "panels/StationHistory.h"
#include "panels/StationPlan.h"
#include "panels/StationView.h"
#include "results/data/PartReader.h"
#include "results/data/Shifts.h"
#include "support/Patience.h"
#include "support/Table.h"
#include "support/TempHome.h"
#include "workflow/ResultHandler.h"

#include <QBitmap>

#include <array>
#include <cmath>

Q_DECLARE_METATYPE(PartRow)

namespace {

using Rgb = std::array<double, 3>; // linear

double linear(double value)
{
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

/// WCAG 2.1, "relative luminance".
double luminance(const Rgb& c)
{
    return 0.2126 * c[0] + 0.7152 * c[1] + 0.0722 * c[2];
}

Rgb times(const double (&matrix)[3][3], const Rgb& c)
{
    Rgb out{};
    for (int i = 0; i < 3; ++i)
        out[i] = qBound(0.0, matrix[i][0] * c[0] + matrix[i][1] * c[1] + matrix[i][2] * c[2], 1.0);
    return out;
}

/// What a colour looks like without red, green or blue cones. Red and green: Viénot, Brettel, Mollon, "Digital video
/// colourmaps for checking the legibility of displays by dichromats" (1999). Blue: Brettel, Viénot, Mollon,
/// "Computerized simulation of color appearance for dichromats" (1997), whose two half-planes meet in the greys; both
/// as matrices of linear sRGB.
std::array<Rgb, 4> seen(const QColor& color)
{
    constexpr double protan[3][3] = {{0.11238, 0.88762, 0}, {0.11238, 0.88762, 0}, {0.00401, -0.00401, 1}};
    constexpr double deutan[3][3] = {{0.29275, 0.70725, 0}, {0.29275, 0.70725, 0}, {-0.02234, 0.02234, 1}};
    constexpr double tritan[2][3][3] = {
        {{1.01277, 0.13548, -0.14826}, {-0.01243, 0.86812, 0.14431}, {0.07589, 0.80500, 0.11911}},
        {{0.93678, 0.18979, -0.12657}, {0.06154, 0.81526, 0.12320}, {-0.37562, 1.12767, 0.24796}}};
    const Rgb c{linear(color.redF()), linear(color.greenF()), linear(color.blueF())};
    const bool first = 0.03901 * c[0] - 0.02788 * c[1] - 0.01113 * c[2] >= 0;
    return {c, times(protan, c), times(deutan, c), times(tritan[first ? 0 : 1], c)};
}

qint64 wallAt(const QString& time, int day = 20)
{
    return PartTable::wallOf(QDateTime(QDate(2026, 3, day), QTime::fromString(time, "hh:mm:ss")));
}

PartRow part(qint64 wall, PartOutcome outcome = PartOutcome::Found, const QString& model = "五辐")
{
    PartRow row;
    row.wall = wall;
    row.part.station = 1;
    row.part.model = model;
    row.part.outcome = outcome;
    row.placed = outcome == PartOutcome::Found;
    row.part.angle = row.placed ? 213.417 : outcome == PartOutcome::Refused ? 999 : 361;
    row.part.x = 1024.508;
    row.part.y = -87.251;
    row.tip = row.placed ? "定位成功" : QString();
    return row;
}

QString counts(const DayCount& count)
{
    return QStringLiteral("%1/%2/%3").arg(count.found).arg(count.notFound).arg(count.refused);
}

QString outcomes(const QVector<PartRow>& parts)
{
    QString text;
    for (const PartRow& row : parts)
        text += QStringLiteral("%1").arg(int(row.part.outcome));
    return text;
}

StationResult resultOf(const PartRow& row)
{
    StationResult result;
    result.part = row.part;
    result.angle = row.part.angle;
    result.stationName = "Station_1";
    result.time = PartTable::timeOf(row.wall);
    return result;
}

/// Where a number's ink lies.
QRect inkOf(ReadoutTile& tile, const QString& value)
{
    tile.setValue(value);
    return QRegion(QBitmap::fromImage(tile.grab().toImage().createMaskFromColor(
                       tile.palette().color(QPalette::Window).rgb(), Qt::MaskOutColor)))
        .boundingRect();
}

QImage picture(int width, int height)
{
    QImage image(width, height, QImage::Format_Grayscale8);
    image.fill(90);
    return image;
}

} // namespace

/// What the panel of a station shows, and what feeds it.
class PanelsTest : public QObject
{
    Q_OBJECT

private slots:
    void lampsAreToldApartByEveryEye()
    {
        const Lamp lamps[] = {Lamp::Waiting, Lamp::Found, Lamp::NotFound, Lamp::Refused};
        for (const Lamp lamp : lamps) {
            const auto ground = seen(lampColors(lamp).ground);
            const auto ink = seen(lampColors(lamp).ink);
            for (int eye = 0; eye < 4; ++eye) {
                const auto [low, high] = std::minmax({luminance(ground[eye]), luminance(ink[eye])});
                QVERIFY2((high + 0.05) / (low + 0.05) >= 4.5, qPrintable(QString("%1 %2").arg(int(lamp)).arg(eye)));
                for (const Lamp other : lamps) {
                    const double theirs = luminance(seen(lampColors(other).ground)[eye]);
                    const double own = luminance(ground[eye]);
                    QVERIFY2(lamp == other || qMax(own, theirs) >= 2 * qMin(own, theirs),
                             qPrintable(QString("%1 %2 for eye %3").arg(int(lamp)).arg(int(other)).arg(eye)));
                }
            }
        }
    }

    void wordsSayWhatThePlcGot_data()
    {
        const auto ends = [](PartOutcome outcome, int error, int plcIndex, const QString& tip) {
            PartRow row = part(0, outcome);
            row.error = error;
            row.part.plcIndex = plcIndex;
            row.tip = tip;
            return row;
        };
        QTest::addColumn<PartRow>("row");
        QTest::addColumn<QString>("words");
        QTest::newRow("found") << part(0) << "213.417°  X 1024.508  Y -87.251";
        QTest::newRow("not found") << ends(PartOutcome::NotFound, 5, 7, "没有孔") << "已发送361：没有孔";
        QTest::newRow("engine code") << ends(PartOutcome::NotFound, 5, 7, {}) << "已发送361：错误 5";
        QTest::newRow("line gone") << ends(PartOutcome::NotFound, 103, 7, "x") << "未发送：通信线路已断开";
        QTest::newRow("no model") << ends(PartOutcome::Refused, 104, 7, {}) << "已发送999：PLC 索引没有型号";
        QTest::newRow("cleared") << ends(PartOutcome::Refused, 104, 0, {}) << "未答复：型号已清零";
        QTest::newRow("too many") << ends(PartOutcome::Refused, 105, 0, {}) << "已发送999：触发过多";
    }
    void wordsSayWhatThePlcGot()
    {
        QFETCH(PartRow, row);
        QTEST(PartWords::sent(row), "words");
    }

    void tallyFollowsOrderShiftsAndReset()
    {
        StationTally tally;
        tally.setShifts(Shifts::fromText("06:00, 14:00, 22:00"));
        tally.setNow(wallAt("13:59:00"));
        tally.add(part(wallAt("13:59:50")));
        tally.add(part(wallAt("13:59:59"), PartOutcome::NotFound)); // still the early shift
        QCOMPARE(counts(tally.shiftCount()), "1/1/0");
        tally.add(part(wallAt("14:00:00"), PartOutcome::Refused));
        QCOMPARE(counts(tally.shiftCount()), "0/0/1");
        tally.add(part(wallAt("13:58:00"))); // the clock was put back
        QCOMPARE(counts(tally.shiftCount()), "2/1/0");
        QCOMPARE(outcomes(tally.recent()), "0120");
        QCOMPARE(tally.recent().last().wall, wallAt("13:58:00"));

        tally.reset(wallAt("13:58:00"));
        QCOMPARE(counts(tally.shiftCount()), "0/0/0");
        tally.reset(wallAt("15:00:00")); // to come
        tally.add(part(wallAt("13:58:30")));
        QCOMPARE(counts(tally.shiftCount()), "1/0/0");
        QCOMPARE(tally.resetAt(), wallAt("13:58:00"));
        QVERIFY(tally.setNow(wallAt("14:30:00")) && !tally.setNow(wallAt("21:59:59")));
        QCOMPARE(told(counts(tally.shiftCount()), tally.resetAt()), "0/0/1|0");
        QCOMPARE(tally.hours().size(), 8);
        QCOMPARE(counts(tally.hours().first().count), "0/0/1");
        tally.setNow(wallAt("13:00:00"));
        QCOMPARE(counts(tally.hours().last().count), "3/1/0"); // hours know of no reset

        for (int i = 0; i < 60; ++i)
            tally.add(part(wallAt("22:30:00") + i, PartOutcome(i % 3)));
        QCOMPARE(tally.recent().size(), StationTally::partsKept);
        QCOMPARE(counts(tally.shiftCount()), "20/20/20");
        tally.setNow(wallAt("05:59:00", 21));
        QCOMPARE(counts(tally.shiftCount()), "20/20/20"); // the night's shift goes on after midnight
    }

    void historyOfBeforeTheStartIsReadBehindTheWindow()
    {
        const TempHome home;
        const QString begins = QDateTime::currentDateTime().addSecs(-120).time().toString("hh:mm");
        home.write("/user/shifts.json", R"({"shift_begins": ")" + begins.toLatin1() + R"("})");
        const qint64 begin = Shifts::fromText(begins).at(PartTable::wallNow()).begin;
        QVector<PartRow> rows;
        QDir().mkpath(home.path("/DBFiles"));
        {
            StationDB database(PartReader::databaseOf(home.path()));
            QVERIFY(database.open());
            for (int i = 0; i < 70; ++i) { // a clock that is put back in the middle to before the shift
                PartRow row = part(begin + (i % 35 - 1) * 1000, PartOutcome(i % 3));
                row.part.sourceImage = i == 67 ? "/DBFiles/none.jpg" : QString();
                rows << row;
                QVERIFY(database.insertResult(resultOf(row), PartTable::timeOf(row.wall)));
            }
        }
        StationHistory history;
        QSignalSpy changed(&history, &StationHistory::changed);
        history.add(1, rows.last(), false); // recorded before the job came to read
        history.start(home.path());
        QTRY_COMPARE(changed.size(), 3);
        QCOMPARE(outcomes(history.of(1).recent()), outcomes(rows.mid(20)));
        QCOMPARE(counts(history.of(1).shiftCount()), "23/23/22");
        QCOMPARE(history.of(1).failures().size(), 1);
        QCOMPARE(counts(history.of(2).shiftCount()), "0/0/0");
        PartReader reader(home.path());
        QVERIFY(reader.open());
        QCOMPARE(reader.partAt(1, rows.last().wall)->uid, 70);
        QVERIFY(!reader.partAt(2, rows.last().wall) && !reader.partAt(1, rows.last().wall + 1));

        const AuditChanges audit = history.resetShift(1);
        QCOMPARE(told(audit.first().name, audit.first().before, audit.first().after), "工位1/本班计数|23/23/22|0/0/0");
        QTRY_VERIFY(home.read("/user/shiftReset.json").contains("station1"));
        StationHistory next;
        QSignalSpy known(&next, &StationHistory::changed);
        next.start(home.path());
        QTRY_COMPARE(known.size(), 2);
        QCOMPARE(counts(next.of(1).shiftCount()), "0/0/0");
        QCOMPARE(next.of(1).recent().size(), StationTally::partsKept);
    }

    void whatIsNotOfTheLastTriggerSaysSo()
    {
        StationView view;
        view.setStation(1);
        view.resize(620, 560);
        const auto* stamp = view.findChild<PictureStamp*>();
        const auto* band = view.findChild<OutcomeBand*>();
        const auto* angle = view.findChild<ReadoutTile*>("angleTile");
        const auto shows = [&] {
            return told(band->content().word, angle->value(), int(angle->sign())) + stamp->text();
        };
        const auto good = [](const QString& model) { return part(wallAt("12:00:05"), PartOutcome::Found, model); };
        QCOMPARE(shows(), told("等待触发", "—", int(ReadoutTile::Faint)));
        view.triggered();
        view.setImage(picture(1224, 1024));
        view.setCaption("五辐");
        view.setPart(good("五辐"), false);
        QCOMPARE(shows(), told("定位成功", "213.417°", int(ReadoutTile::Good)));
        QCOMPARE(band->content().part, "12:00:05  五辐"); // whatever the station runs by now
        QCOMPARE(band->content().sent, "213.417°  X 1024.508  Y -87.251");
        QVERIFY(view.hasPictureOfPart() && stamp->isHidden());

        view.triggered();
        QTRY_COMPARE(band->content().word, "等待结果");
        QVERIFY(!stamp->isHidden() && stamp->text().startsWith("上一件 ") && stamp->text().endsWith("五辐"));
        QCOMPARE(told(angle->value(), int(angle->sign())), told("213.417°", int(ReadoutTile::Faint)));
        QTRY_COMPARE(band->content().word, "已触发，没有结果");
        QCOMPARE(angle->value(), "—");
        view.setPart(part(wallAt("12:00:08"), PartOutcome::NotFound), false); // overdue: without a picture
        QVERIFY(!stamp->isHidden() && band->content().lamp == Lamp::NotFound);

        view.triggered();
        view.setImage(picture(1224, 1024));
        view.setPart(good("钢圈"), true);
        QVERIFY(stamp->isHidden() && band->content().test);
        QCOMPARE(told(band->content().word, band->content().sent), "测试：定位成功|未发送");
        view.setPart(part(wallAt("12:00:09"), PartOutcome::Refused), false);
        QVERIFY(!stamp->isHidden() && angle->value() == "—" && band->content().lamp == Lamp::Refused);

        view.triggered(); // a second trigger comes before the answer to the first
        view.triggered();
        view.setImage(picture(1224, 1024));
        view.setPart(good("五辐"), false);
        QTRY_COMPARE(band->content().word, "等待结果");
        QVERIFY(!stamp->isHidden());
    }

    void digitsKeepTheirSizeAndPlaces()
    {
        ReadoutTile tile;
        tile.setWidest("-00000.000");
        tile.resize(240, 44);
        const QRect widest = inkOf(tile, "-32768.998");
        QVERIFY2(widest.width() > 180 && tile.rect().contains(widest), qPrintable(QString::number(widest.width())));
        for (const char* value : {"1.118", "8.888", "-0.008", "1024.508"}) {
            const QRect ink = inkOf(tile, value);
            QCOMPARE(told(ink.right(), ink.height(), ink.top()), told(widest.right(), widest.height(), widest.top()));
        }
        QCOMPARE(inkOf(tile, "—").left() < 12, true);
    }

    void everyPartOfTheStripLeadsToItself()
    {
        OutcomeStrip strip;
        QSignalSpy wanted(&strip, &OutcomeStrip::partWanted);
        for (const int width : {480, 613, 1500}) {
            strip.resize(width, 26);
            for (const int count : {1, 7, 50}) {
                QVector<PartRow> parts;
                for (int i = 0; i < count; ++i)
                    parts << part(1000 + i);
                strip.setParts(parts);
                wanted.clear();
                for (int i = 0; i < count; ++i)
                    QTest::mouseClick(&strip, Qt::LeftButton, {}, strip.barOf(i).center());
                QCOMPARE(wanted.size(), count);
                QCOMPARE(told(wanted.first().first().toLongLong(), wanted.last().first().toLongLong()),
                         told(1000, 999 + count));
                QVERIFY(strip.barOf(count - 1).right() >= width - 3 && strip.barOf(0).width() >= 8);
            }
        }
    }

    void failuresShowTheirPicturesOrThatTheyAreGone()
    {
        const TempHome home;
        QVERIFY(picture(800, 600).save(home.path("/a.jpg")));
        FailurePictures pictures;
        pictures.resize(400, 80);
        pictures.setHome(home.path());
        QVector<PartRow> parts{part(1, PartOutcome::NotFound), part(2, PartOutcome::NotFound),
                               part(3, PartOutcome::NotFound)};
        parts[0].resultImage = "/a.jpg";
        parts[1].part.sourceImage = "/cleaned.jpg";
        QSignalSpy loaded(&pictures, &FailurePictures::loaded);
        QSignalSpy wanted(&pictures, &FailurePictures::partWanted);
        pictures.keepPicture(parts[2], picture(1224, 1024)); // whose file is still being written
        pictures.setParts(parts);
        QTRY_COMPARE(loaded.size(), 3);
        QCOMPARE(told(pictures.isGone(1), pictures.isGone(2), pictures.isGone(3)), "false|true|false");
        QCOMPARE(pictures.shown(), 3);
        QTest::mouseClick(&pictures, Qt::LeftButton, {}, pictures.cellOf(0).center());
        QCOMPARE(wanted.first().first().toLongLong(), 3); // the newest is the first
    }

    void pictureFillsItsPlaceAndNothingLiesOverAnything_data()
    {
        Table::of<QSize, double>({{"two at 1024", {460, 400}, 1.2},
                                  {"two at 1280", {620, 500}, 1.2},
                                  {"two at 1920", {930, 760}, 1.2},
                                  {"wide camera", {620, 500}, 1.78},
                                  {"tall camera", {620, 500}, 0.75},
                                  {"narrow", {450, 700}, 1.2},
                                  {"one at 1024", {1000, 400}, 1.2},
                                  {"one at 1280", {1260, 500}, 1.33},
                                  {"one at 1920", {1890, 760}, 1.2}});
    }
    void pictureFillsItsPlaceAndNothingLiesOverAnything()
    {
        const auto [size, aspect] = Table::row<QSize, double>();
        const QRect room(QPoint(10, 6), size);
        const StationPlan plan = StationPlan::of(room, aspect, {28, 80});
        const QRect all[] = {plan.station,  plan.model,   plan.band,  plan.picture, plan.strip,
                             plan.angle,    plan.x,       plan.y,     plan.found,   plan.yield,
                             plan.notFound, plan.refused, plan.shift, plan.hours,   plan.failures};
        int used = 0;
        for (const QRect& a : all) {
            QVERIFY(room.contains(a) || a == QRect());
            used += a.width() * a.height();
            for (const QRect& b : all)
                QVERIFY(&a == &b || !a.intersects(b));
        }
        QVERIFY2(used * 100 > size.width() * size.height() * 80, qPrintable(QString::number(used)));
        QVERIFY(qAbs(double(plan.picture.width()) / plan.picture.height() - aspect) < 0.02);
        QVERIFY(plan.picture.width() * plan.picture.height() * 100 > size.width() * size.height() * 17);
        QVERIFY(plan.band.height() >= 56 && plan.band.width() == size.width());
        QVERIFY(plan.angle.height() >= 50 && plan.angle.width() >= 170 && plan.x.width() >= 130);
    }
};

QTEST_MAIN(PanelsTest)
#include "tst_panels.moc"
