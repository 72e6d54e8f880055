#include "db/WaitingRows.h"

#include "db/SqlText.h"
#include "db/log/LogLine.h"

#include <valvecell/HomeFiles.h>

#include <QJsonArray>

namespace {

/// Far more than rows are let wait.
constexpr qint64 maxBytes = 256LL * 1024 * 1024;

QJsonObject toJson(const WaitingRow& row)
{
    const StationResult& result = row.result;
    return {{"time", row.time.toString(Qt::ISODateWithMs)},
            {"dAngle", result.angle},
            {"errorType", result.errorType},
            {"matchScore", result.matchScore},
            {"resultTip", result.resultTip},
            {"threshBenchMark", result.threshBenchMark},
            {"stationName", result.stationName},
            {"value1", result.value1},
            {"value2", result.value2},
            {"value3", result.value3}};
}

WaitingRow rowOf(const QJsonObject& json)
{
    const auto text = [&json](const char* key) { return SqlText::madeCarriable(json[QLatin1String(key)].toString()); };
    StationResult result;
    result.angle = json["dAngle"].toDouble();
    result.errorType = json["errorType"].toInt();
    result.matchScore = json["matchScore"].toDouble();
    result.resultTip = text("resultTip");
    result.threshBenchMark = text("threshBenchMark");
    result.stationName = text("stationName");
    result.value1 = text("value1");
    result.value2 = text("value2");
    result.value3 = text("value3");
    return {result, QDateTime::fromString(json["time"].toString(), Qt::ISODateWithMs)};
}

QByteArray lineOf(const WaitingRow& row)
{
    return QJsonDocument(toJson(row)).toJson(QJsonDocument::Compact) + '\n';
}

/// As earlier versions wrote it: one object that lists them.
QVector<WaitingRow> listed(const QJsonObject& object)
{
    QVector<WaitingRow> rows;
    const QJsonArray list = object["rows"].toArray();
    for (const QJsonValue& row : list)
        rows.append(rowOf(row.toObject()));
    return rows;
}

} // namespace

WaitingRowsFile::WaitingRowsFile(QString path)
    : m_path(std::move(path))
{
}

/// A last line without an end was being written when the process died: the part in hand.
QVector<WaitingRow> WaitingRowsFile::read()
{
    QFile file(m_path);
    m_exists = file.exists();
    if (!m_exists || HomeFiles::isNoFile(m_path) || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray content = file.read(maxBytes);
    const QJsonObject whole = QJsonDocument::fromJson(content).object();
    if (whole.contains(QLatin1String("rows")))
        return listed(whole);
    QVector<WaitingRow> rows;
    QList<QByteArray> lines = content.split('\n');
    m_complete = lines.takeLast().isEmpty();
    int spoiled = 0;
    for (const QByteArray& line : qAsConst(lines)) {
        const WaitingRow row = rowOf(QJsonDocument::fromJson(line).object());
        row.time.isValid() ? rows.append(row) : void(++spoiled);
    }
    m_lines = lines.size();
    if (spoiled > 0)
        SystemLog::warning(tr("未写入的结果有%1条不能读取：%2，原文件保留为%3")
                               .arg(QString::number(spoiled), m_path, HomeFiles::copyAside(m_path)));
    return rows;
}

bool WaitingRowsFile::add(const WaitingRow& row)
{
    const QByteArray line = lineOf(row);
    QFile file(m_path);
    m_complete = m_complete && file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered) &&
                 file.write(line) == line.size();
    m_exists = m_exists || file.exists();
    ++m_lines;
    return m_complete;
}

bool WaitingRowsFile::write(const std::deque<const WaitingRow*>& rows, QString* error)
{
    QByteArray content;
    for (const WaitingRow* row : rows)
        content += lineOf(*row);
    m_complete = HomeFiles::writeFile(m_path, content, error);
    m_exists = m_exists || m_complete;
    m_lines = static_cast<int>(rows.size());
    return m_complete;
}

void WaitingRowsFile::remove()
{
    if (m_exists)
        QFile::remove(m_path);
    m_exists = false;
    m_complete = true;
    m_lines = 0;
}
