#include "../Bench.h"
#include "db/ResultReader.h"
#include "db/StationDB.h"

#include <QTemporaryDir>

#include <map>

namespace {

constexpr int million = 1000000;
constexpr int rowsADay = 10800; // a part every 8 seconds

/// One of the days in the middle of the million.
const QDate busyDay(2024, 2, 20);

class FilledConnection : public SqlConnection
{
public:
    explicit FilledConnection(const QString& path)
        : SqlConnection("QSQLITE")
    {
        database().setDatabaseName(path);
        database().open();
    }
};

/// A result database with this many rows, made once for a run.
QString databaseWith(int rows)
{
    static QTemporaryDir folder;
    static std::map<int, QString> made;
    QString& path = made[rows];
    if (path.isEmpty()) {
        path = folder.filePath(QStringLiteral("Pellix-%1.db").arg(rows));
        StationDB(path).initialise();
        FilledConnection(path).exec(
            QStringLiteral(
                "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i + 1 < %1) "
                "INSERT INTO RltTable(dAngle, errorType, matchScore, resultTip, stationName, "
                "threshBenchMark, time, value1, value2, value3) "
                "SELECT (i * 37 %% 360000) / 1000.0, 0, 90 + i %% 10, 'OK', 'Station_' || (i %% 2 + 1), "
                "(i %% 2 + 1) || '_W18', "
                "strftime('%Y-%m-%d %H:%M:%S', 1704067200 + i * 8, 'unixepoch') || printf(' %03d', i %% 1000), "
                "'/DBFiles/Images/2024-01-01/Station1/W18/2024_01_01_000000000.jpg', 'W18', '' "
                "FROM n WHERE %1 > 0")
                .replace("%%", "%")
                .replace("%1", QString::number(rows)));
    }
    return path;
}

StationResult sampleResult()
{
    StationResult result;
    result.angle = 123.456;
    result.matchScore = 97.25;
    result.resultTip = QStringLiteral("气门孔 OK");
    result.stationName = "Station_1";
    result.threshBenchMark = result.value2 = "1_W18";
    result.value1 = "/DBFiles/Images/2024-05-01/Station1/W18/2024_05_01_120000000.jpg";
    return result;
}

void insertResult(benchmark::State& state, SqliteFile::Durability durability)
{
    StationDB database(databaseWith(static_cast<int>(state.range(0))));
    database.setDurability(durability);
    if (!database.initialise())
        return state.SkipWithError("cannot open the database");
    const StationResult result = sampleResult();
    bool good = true;
    Laps laps(state);
    for (auto _ : state)
        laps.time([&] { good = database.insertResult(result) && good; });
    if (!good)
        state.SkipWithError("a row was not inserted");
}

/// A row of a part while rows of earlier years go, as the cell does both: one step of the thinning to `range(0)` rows,
/// 0 for none. The file is its own: what goes would be missed by others.
void insertWhileThinning(benchmark::State& state)
{
    const auto rowsAStep = static_cast<int>(state.range(0));
    StationDB database(databaseWith(million + 1));
    if (!database.initialise())
        return state.SkipWithError("cannot open the database");
    database.thinner().setDays(rowsAStep > 0 ? 1 : 0);
    const StationResult result = sampleResult();
    std::chrono::duration<double, std::milli> longest(0);
    int inserted = 0;
    Laps laps(state);
    for (auto _ : state) {
        if (rowsAStep > 0 && ++inserted % rowsAStep == 0) {
            const auto begin = std::chrono::steady_clock::now();
            database.thin();
            longest = std::max<decltype(longest)>(longest, std::chrono::steady_clock::now() - begin);
        }
        laps.time([&] { database.insertResult(result); });
    }
    state.counters["longest_step_ms"] = longest.count();
    state.counters["inserts_per_s"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

/// As the cell runs: it outlives the process at once, and the disk has it within a tenth of a second.
void insertFlushedSoon(benchmark::State& state)
{
    insertResult(state, SqliteFile::Durability::SoonAfter);
}

void insertFlushedBeforeReturn(benchmark::State& state)
{
    insertResult(state, SqliteFile::Durability::BeforeReturn);
}

template <typename Query>
void readDay(benchmark::State& state, int expected, Query query)
{
    ResultReader reader(databaseWith(million));
    QString error;
    if (!reader.open(&error))
        return state.SkipWithError(qPrintable(error));
    int rows = 0;
    Laps laps(state);
    for (auto _ : state)
        laps.time([&] { rows = query(reader); });
    if (rows != expected)
        state.SkipWithError("other rows than expected");
}

void allRowsOfADay(benchmark::State& state)
{
    readDay(state, rowsADay, [](ResultReader& reader) { return reader.resultsOfDay(busyDay).size(); });
}

void first100RowsOfADay(benchmark::State& state)
{
    readDay(state, 100, [](ResultReader& reader) { return reader.resultsOfDay(busyDay, 100).size(); });
}

void countOfADay(benchmark::State& state)
{
    readDay(state, rowsADay, [](ResultReader& reader) { return reader.countOfDay(busyDay); });
}

} // namespace

BENCHMARK(insertFlushedSoon)->Arg(0)->Arg(million)->Iterations(5000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(insertWhileThinning)
    ->Arg(0)
    ->Arg(1)
    ->Arg(10)
    ->Iterations(5000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(insertFlushedBeforeReturn)
    ->Arg(0)
    ->Arg(million)
    ->Iterations(5000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(allRowsOfADay)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(first100RowsOfADay)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(countOfADay)->UseManualTime()->Unit(benchmark::kMillisecond);
