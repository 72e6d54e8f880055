#include "../Bench.h"
#include "db/log/LogLine.h"
#include "db/log/ksLogDB.h"

#include <QGuiApplication>
#include <QTemporaryDir>

namespace {

SystemLog::ksLogDB& log()
{
    static QTemporaryDir folder;
    static SystemLog::ksLogDB database(folder.filePath("dbLog.db"));
    return database;
}

/// A line as the workflow writes it, into the queue of the running writer, whose limit it soon reaches.
void appendLogLine(benchmark::State& state)
{
    if (state.thread_index() == 0) {
        SystemLog::setOutput([](int type, const char* message, int length) { log().append(type, message, length); });
        log().start();
    }
    for (auto _ : state)
        SystemLog::LogLine(SystemLog::Information).stream()
            << "●工位" << 1 << ":收到触发信号,型号为[W18],型号索引ID为[" << 7 << "]";
    state.SetItemsProcessed(state.iterations());
    if (state.thread_index() == 0)
        SystemLog::setOutput(nullptr);
}

} // namespace

BENCHMARK(appendLogLine)->Threads(4)->UseRealTime();

int main(int argc, char** argv)
{
    return runBenchmarks<QGuiApplication>(argc, argv);
}
