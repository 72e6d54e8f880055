#include "db/ResultRecorder.h"

#include "db/SqlText.h"

namespace {

/// Waiting rows go in by portions, so that the thread is free between them.
constexpr qint64 portionNs = 20 * 1000 * 1000;

StationResult madeCarriable(StationResult result)
{
    for (QString* text : {&result.resultTip, &result.threshBenchMark, &result.stationName, &result.value1,
                          &result.value2, &result.value3})
        *text = SqlText::madeCarriable(*text);
    return result;
}

} // namespace

ResultRecorder::ResultRecorder(StationDB& database, QObject* parent)
    : ResultRecorder(database, Rules(), parent)
{
}

ResultRecorder::ResultRecorder(StationDB& database, Rules rules, QObject* parent)
    : QObject(parent)
    , m_database(database)
    , m_rules(std::move(rules))
    , m_retry(m_rules.scheduler->timer(Scheduler::SingleShot, [this] { retry(); }))
{
}

ResultRecorder::~ResultRecorder()
{
    while (!m_waiting.empty() && insert(m_waiting.front()))
        m_waiting.pop_front();
    if (!m_waiting.empty())
        SystemLog::warning(tr("%1条结果未能写入数据库%2").arg(waiting()).arg(m_database.path()));
}

/// Behind rows that wait, so that all go in in their order.
void ResultRecorder::record(const StationResult& result)
{
    Row row{madeCarriable(result), m_rules.scheduler->now()};
    if (!m_waiting.empty() || !insert(row))
        keep(std::move(row));
}

bool ResultRecorder::insert(const Row& row)
{
    return (m_database.isOpen() || m_database.open()) && m_database.insertResult(row.result, row.time);
}

void ResultRecorder::keep(Row row)
{
    m_fault.failed(tr("结果暂不能写入数据库%1，稍后补写：%2").arg(m_database.path(), m_database.lastError()));
    m_waiting.push_back(std::move(row));
    while (waiting() > m_rules.maxWaiting) {
        m_waiting.pop_front();
        ++m_givenUp;
    }
    if (!m_retry->isActive())
        m_retry->start(m_rules.retryMs);
}

void ResultRecorder::retry()
{
    const qint64 begin = m_rules.scheduler->elapsedNs();
    bool good = true;
    while (good && !m_waiting.empty() && m_rules.scheduler->elapsedNs() - begin < portionNs) {
        good = insert(m_waiting.front());
        if (good)
            m_waiting.pop_front();
    }
    if (m_waiting.empty()) {
        m_fault.over(
            tr("结果已补写入数据库，期间%1条延迟，其中%2条丢弃").arg(QStringLiteral("%1"), QString::number(m_givenUp)));
        m_givenUp = 0;
    } else {
        m_retry->start(good ? 0 : m_rules.retryMs);
    }
    emit retried(waiting());
}
