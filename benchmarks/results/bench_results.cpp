#include "../Bench.h"
#include "BigHome.h"
#include "db/StationDB.h"
#include "platform/System.h"
#include "results/ResultsView.h"
#include "results/charts/StatisticsPage.h"
#include "results/data/LogReader.h"
#include "results/data/PartReader.h"
#include "results/logs/LogPage.h"
#include "results/logs/LogTableModel.h"
#include "results/parts/PartFilterBar.h"
#include "results/parts/PartTableModel.h"
#include "results/parts/PartsPage.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <atomic>
#include <ctime>
#include <thread>

namespace {

/// What this thread took of the processor, in milliseconds.
double ownWorkMs()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

/// The longest time between two turns of the event loop while it lives, and the most work.
class Gaps : public QObject
{
public:
    Gaps()
    {
        m_clock.start();
        m_timer = startTimer(1, Qt::PreciseTimer);
    }
    void tell(benchmark::State& state) const
    {
        state.counters["block_ms"] = m_longest;
        state.counters["block_cpu_ms"] = m_mostWork;
    }

protected:
    void timerEvent(QTimerEvent*) override
    {
        m_longest = std::max(m_longest, double(m_clock.nsecsElapsed()) / 1e6);
        m_clock.restart();
        const double work = ownWorkMs();
        m_mostWork = std::max(m_mostWork, work - m_work);
        m_work = work;
    }

private:
    QElapsedTimer m_clock;
    int m_timer = 0;
    double m_longest = 0;
    double m_work = ownWorkMs();
    double m_mostWork = 0;
};

/// Turns the event loop until that signal.
template <typename Sender, typename Signal, typename Start>
void await(Sender* sender, Signal signal, Start start)
{
    QEventLoop loop;
    QObject::connect(sender, signal, &loop, &QEventLoop::quit);
    start();
    loop.exec();
}

/// The window as a person opens it, until the newest parts are in sight.
void firstPageAfterStart(benchmark::State& state)
{
    BigHome::path();
    Laps laps(state);
    for (auto _ : state)
        laps.time([] {
            ResultsView view;
            view.setHome(BigHome::path());
            await(&view.parts().table(), &PagedTableBase::refreshed, [&] { view.show(); });
        });
}

/// The first page, or as much of it as a search found so far; and until all are counted.
template <typename Table>
void pageAndAll(benchmark::State& state, Table& table)
{
    Laps laps(state);
    QElapsedTimer clock;
    qint64 longest = 0;
    bool counted = false;
    QObject::connect(&table, &PagedTableBase::counted, &table, [&counted] { counted = true; });
    for (auto _ : state) {
        clock.start();
        counted = false;
        laps.time([&] { await(&table, &PagedTableBase::refreshed, [&] { table.refresh(); }); });
        while (!counted)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        longest = std::max(longest, clock.elapsed());
    }
    state.counters["counted_ms"] = double(longest);
}

struct NamedPartFilter
{
    const char* name;
    std::function<void(PartFilter&)> set;
};
const NamedPartFilter partFilters[] = {
    {"all", [](PartFilter&) {}},
    {"station", [](PartFilter& filter) { filter.station = 2; }},
    {"model", [](PartFilter& filter) { filter.model = "W7"; }},
    {"refused", [](PartFilter& filter) { filter.found = filter.notFound = false; }},
    {"failures", [](PartFilter& filter) { filter.found = false; }},
    {"failures of a model", [](PartFilter& filter) { filter.found = false, filter.model = "W3"; }},
    {"marked", [](PartFilter& filter) { filter.markedOnly = true; }},
    {"month", [](PartFilter& filter) { filter.from = QDateTime::currentDateTime().addDays(-30); }},
    {"common text", [](PartFilter& filter) { filter.text = "77"; }},
    {"text nowhere", [](PartFilter& filter) { filter.text = "xyzzy"; }},
};

void partsFirstPage(benchmark::State& state)
{
    const NamedPartFilter& named = partFilters[state.range(0)];
    state.SetLabel(named.name);
    PartFilter filter;
    named.set(filter);
    PartTableModel table;
    table.setHome(BigHome::path());
    table.setFilter(filter);
    pageAndAll(state, table);
}

struct NamedLogFilter
{
    const char* name;
    std::function<void(LogFilter&)> set;
};
const NamedLogFilter logFilters[] = {
    {"all", [](LogFilter&) {}},
    {"week", [](LogFilter& filter) { filter.from = QDate::currentDate().addDays(-6); }},
    {"errors", [](LogFilter& filter) { filter.least = 0; }},
    {"changes", [](LogFilter& filter) { filter.changesOnly = true; }},
    {"text nowhere, a week",
     [](LogFilter& filter) { filter.text = "xyzzy", filter.from = QDate::currentDate().addDays(-6); }},
    {"text nowhere, all", [](LogFilter& filter) { filter.text = "xyzzy"; }},
};

void logFirstPage(benchmark::State& state)
{
    const NamedLogFilter& named = logFilters[state.range(0)];
    state.SetLabel(named.name);
    LogFilter filter;
    named.set(filter);
    LogTableModel table;
    table.setHome(BigHome::path());
    table.setFilter(filter);
    pageAndAll(state, table);
}

/// Thirty days, a third of a million parts: read, computed and drawn; and what held the window longest meanwhile.
void monthsChart(benchmark::State& state)
{
    const auto kind = Charts::Kind(state.range(0));
    state.SetLabel(Charts::nameOf(kind).toStdString());
    StatisticsPage page;
    page.resize(1200, 700);
    page.setHome(BigHome::path());
    page.findChild<PartFilterBar*>()->setFilter(PartFilterBar::Month, 0, true, true, true);
    await(&page, &StatisticsPage::shown, [&] { page.choose(kind), page.show(), page.refresh(); });
    const Gaps gaps;
    {
        Laps laps(state);
        for (auto _ : state)
            laps.time([&] { await(&page, &StatisticsPage::shown, [&] { page.refresh(); }); });
    }
    QCoreApplication::processEvents();
    gaps.tell(state);
}

/// All pages one after the other, with a search for what is nowhere.
void longestBlockWhilePagesLoad(benchmark::State& state)
{
    ResultsView view;
    view.resize(1200, 700);
    view.setHome(BigHome::path());
    await(&view.parts().table(), &PagedTableBase::counted, [&] { view.show(); });
    const Gaps gaps;
    for (auto _ : state) {
        view.setCurrentIndex(0);
        await(&view.parts().table(), &PagedTableBase::counted, [&] { view.refresh(); });
        await(&view.statistics(), &StatisticsPage::shown, [&] { view.setCurrentIndex(1); });
        await(view.logs().findChild<LogTableModel*>(), &PagedTableBase::counted, [&] { view.setCurrentIndex(2); });
    }
    gaps.tell(state);
}

double p99(std::vector<double>& ms)
{
    std::sort(ms.begin(), ms.end());
    return ms.at(ms.size() * 99 / 100);
}

/// What the cell pays for a row while somebody searches a million parts and draws all of them, in turns with what it
/// pays alone.
void insertResult(benchmark::State& state)
{
    std::atomic<bool> goOn{true};
    std::atomic<bool> reads{false};
    std::thread reader([&, home = BigHome::path()] {
        platform::lowerThreadPriority(); // as the pages
        while (goOn) {
            PartReader parts(home);
            PartFilter nowhere;
            nowhere.text = "xyzzy";
            if (reads && parts.open()) {
                parts.count(nowhere);
                parts.series({}, PartSeries::All, [&] { return goOn && reads; });
            } else {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        }
    });
    StationDB database(PartReader::databaseOf(BigHome::path()));
    database.setDurability(SqliteFile::Durability::SoonAfter);
    bool good = database.initialise();
    StationResult result;
    result.stationName = "Station_1";
    result.part.station = 1;
    result.part.model = "W18";
    std::vector<double> alone, beside;
    int inserted = 0;
    constexpr int rowsATurn = 250;
    for (auto _ : state) {
        reads = inserted++ / rowsATurn % 2 == 1;
        const auto start = std::chrono::steady_clock::now();
        good = database.insertResult(result) && good;
        const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
        (reads ? beside : alone).push_back(taken.count());
        std::this_thread::sleep_for(std::chrono::milliseconds(2)); // parts do not come faster
    }
    goOn = false;
    reader.join();
    if (!good)
        return state.SkipWithError("a row was not inserted");
    state.counters["p99_alone_ms"] = p99(alone);
    state.counters["p99_beside_ms"] = p99(beside);
}

} // namespace

BENCHMARK(firstPageAfterStart)->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(partsFirstPage)
    ->DenseRange(0, int(std::size(partFilters)) - 1)
    ->Iterations(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(logFirstPage)
    ->DenseRange(0, int(std::size(logFilters)) - 1)
    ->Iterations(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(monthsChart)
    ->DenseRange(Charts::Yield, Charts::Failures)
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(longestBlockWhilePagesLoad)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(insertResult)->Iterations(10000)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    return runBenchmarks<QApplication>(argc, argv);
}
