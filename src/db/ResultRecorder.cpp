#include "db/ResultRecorder.h"

#include "db/SqlText.h"

#include <algorithm>

namespace {

/// Waiting rows go in by portions, so that the thread is free between them.
constexpr qint64 portionNs = 20 * 1000 * 1000;

/// Of earlier versions, at a time.
constexpr int rowsFilledIn = 500;

StationResult madeCarriable(StationResult result)
{
    for (QString* text : {&result.resultTip, &result.threshBenchMark, &result.stationName, &result.value1,
                          &result.value2, &result.value3, &result.part.sourceImage})
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
    , m_file(database.path() + QStringLiteral(".waiting.json"))
    , m_retry(m_rules.scheduler->timer(Scheduler::SingleShot, [this] { retry(); }))
    , m_fillIn(m_rules.scheduler->timer(Scheduler::SingleShot, [this] { fillInParts(); }))
{
    readFile();
    m_fillIn->start(m_rules.retryMs);
}

ResultRecorder::~ResultRecorder()
{
    while (!m_waiting.empty() && insert(m_waiting.front()))
        m_waiting.pop_front();
    if (m_waiting.empty())
        enterPictures();
    endWaiting();
}

void ResultRecorder::readFile()
{
    const QVector<WaitingRow> rows = m_file.read();
    for (const WaitingRow& row : rows)
        m_waiting.push_back({row, {}, true});
    if (m_file.exists())
        m_retry->start(0);
}

/// The file goes only when all of its rows are in the database: after a crash in between none is lost, and insert()
/// sees to it that none goes in twice.
bool ResultRecorder::writeFile(QString* error)
{
    std::deque<const WaitingRow*> rows;
    for (const Row& row : m_waiting)
        rows.push_back(&row);
    if (!rows.empty())
        return m_file.write(rows, error);
    m_file.remove();
    return true;
}

bool ResultRecorder::holdsEarlier() const
{
    return std::any_of(m_waiting.begin(), m_waiting.end(), [](const Row& row) { return row.spilled; });
}

void ResultRecorder::endWaiting()
{
    QString error;
    if (!writeFile(&error))
        SystemLog::warning(tr("%1条结果未能写入数据库%2").arg(waiting()).arg(m_database.path()) + QStringLiteral(": ") +
                           error);
    else if (!m_waiting.empty())
        SystemLog::warning(tr("%1条结果暂存于%2，下次启动时写入数据库").arg(waiting()).arg(m_file.path()));
}

/// Behind rows that wait, so that all go in in their order.
void ResultRecorder::record(const StationResult& result, const QString& picture)
{
    Row row{{madeCarriable(result), result.time.isValid() ? result.time : m_rules.scheduler->now()}, picture};
    row.alike = countAlike(row);
    if (!m_waiting.empty() || !insert(row))
        keep(std::move(row));
}

/// In pauses, so that a row of a part waits some milliseconds at most.
void ResultRecorder::fillInParts()
{
    if (!m_database.isOpen() || m_database.fillInParts(rowsFilledIn))
        m_fillIn->start(m_rules.retryMs);
}

int ResultRecorder::countAlike(const Row& row)
{
    if (row.time != m_moment)
        m_ofMoment.clear();
    m_moment = row.time;
    const QStringList looks{row.result.stationName, row.result.value2, row.result.value3};
    m_ofMoment.append(looks);
    return m_ofMoment.count(looks) - 1;
}

bool ResultRecorder::insert(const Row& row)
{
    if (!m_database.isOpen() && !m_database.open())
        return false;
    if (row.spilled && m_database.countAlike(row.result, row.time) > row.alike)
        return true;
    if (!m_database.insertResult(row.result, row.time))
        return false;
    if (!row.picture.isEmpty())
        m_pictures.insert(row.picture, {m_database.lastRow(), row.time});
    return true;
}

void ResultRecorder::onPictureEnded(const QString& path, bool saved)
{
    for (Row& row : m_waiting) {
        if (row.picture != path)
            continue;
        row.result.value1 = saved ? SqlText::madeCarriable(path) : QString();
        row.picture.clear();
        return;
    }
    const auto named = m_pictures.find(path);
    if (named == m_pictures.end())
        return;
    if (saved)
        m_toBeEntered.append({path, *named});
    m_pictures.erase(named);
    enterPictures();
}

/// Those that the database refuses for the moment wait for the next attempt, or the next picture.
void ResultRecorder::enterPictures()
{
    while (!m_toBeEntered.isEmpty()) {
        const auto& [path, named] = m_toBeEntered.first();
        if (!m_database.setPicture(named.row, named.time, SqlText::madeCarriable(path)))
            break;
        m_toBeEntered.removeFirst();
    }
    if (!m_toBeEntered.isEmpty() && !m_retry->isActive())
        m_retry->start(m_rules.retryMs);
}

void ResultRecorder::keep(Row row)
{
    m_fault.failed(tr("结果暂不能写入数据库%1，稍后补写：%2").arg(m_database.path(), m_database.lastError()));
    m_file.add(row);
    m_waiting.push_back(std::move(row));
    while (waiting() > m_rules.maxWaiting) {
        m_waiting.pop_front();
        ++m_givenUp;
    }
    if (m_file.lines() > 2 * m_rules.maxWaiting)
        writeFile();
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
        m_file.remove();
        enterPictures();
        m_fault.over(
            tr("结果已补写入数据库，期间%1条延迟，其中%2条丢弃").arg(QStringLiteral("%1"), QString::number(m_givenUp)));
        m_givenUp = 0;
    } else {
        if (!m_file.isComplete())
            writeFile();
        m_retry->start(good ? 0 : m_rules.retryMs);
    }
    emit retried(waiting());
}
