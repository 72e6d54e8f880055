#include "db/WaitingRows.h"

#include "db/SqlText.h"
#include "db/log/LogLine.h"

#include <valvecell/HomeFiles.h>

#include <QJsonArray>

namespace {

/// Far more than rows are let wait.
constexpr qint64 maxBytes = 256LL * 1024 * 1024;

QJsonObject toJson(const PartRecord& part)
{
    return {{"station", part.station},
            {"model", part.model},
            {"plcIndex", part.plcIndex},
            {"outcome", int(part.outcome)},
            {"angle", part.angle},
            {"x", part.x},
            {"y", part.y},
            {"score", part.score},
            {"imageMs", part.imageMs},
            {"resultMs", part.resultMs},
            {"replyMs", part.replyMs},
            {"user", part.user},
            {"calibration", part.calibration},
            {"sourceImage", part.sourceImage}};
}

PartRecord partOf(const QJsonObject& json)
{
    PartRecord part;
    part.station = json["station"].toInt();
    part.model = json["model"].toString();
    part.plcIndex = json["plcIndex"].toInt();
    part.outcome = PartOutcome(json["outcome"].toInt(int(PartOutcome::NotFound)));
    part.angle = json["angle"].toDouble();
    part.x = json["x"].toDouble();
    part.y = json["y"].toDouble();
    part.score = json["score"].toDouble();
    part.imageMs = json["imageMs"].toDouble(-1);
    part.resultMs = json["resultMs"].toDouble(-1);
    part.replyMs = json["replyMs"].toDouble(-1);
    part.user = json["user"].toString();
    part.calibration = json["calibration"].toString();
    part.sourceImage = json["sourceImage"].toString();
    return part;
}

QJsonObject toJson(const WaitingRow& row)
{
    const StationResult& result = row.result;
    return {{"time", row.time.toString(Qt::ISODateWithMs)},
            {"alike", row.alike},
            {"part", toJson(result.part)},
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

bool isRow(const QJsonObject& json)
{
    return json["dAngle"].isDouble() && QDateTime::fromString(json["time"].toString(), Qt::ISODateWithMs).isValid();
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
    result.part = partOf(json["part"].toObject());
    result.part.sourceImage = SqlText::madeCarriable(result.part.sourceImage);
    return {result, QDateTime::fromString(json["time"].toString(), Qt::ISODateWithMs), json["alike"].toInt()};
}

/// The entries of either form.
QVector<QJsonObject> entriesOf(const QByteArray& content)
{
    QVector<QJsonObject> entries;
    const QJsonObject whole = QJsonDocument::fromJson(content).object();
    if (whole.contains(QLatin1String("rows"))) {
        const QJsonArray list = whole["rows"].toArray();
        for (const QJsonValue& entry : list)
            entries.append(entry.toObject());
        return entries;
    }
    QList<QByteArray> lines = content.split('\n');
    lines.removeLast();
    for (const QByteArray& line : qAsConst(lines))
        entries.append(QJsonDocument::fromJson(line).object());
    return entries;
}

} // namespace

QByteArray WaitingRows::lineOf(const WaitingRow& row)
{
    return QJsonDocument(toJson(row)).toJson(QJsonDocument::Compact) + '\n';
}

QVector<WaitingRow> WaitingRows::parse(const QByteArray& content, int* leftOut)
{
    QVector<WaitingRow> rows;
    const QVector<QJsonObject> entries = entriesOf(content);
    for (const QJsonObject& entry : entries) {
        if (isRow(entry))
            rows.append(rowOf(entry));
    }
    *leftOut = entries.size() - rows.size();
    return rows;
}

WaitingRowsFile::WaitingRowsFile(QString path)
    : m_path(std::move(path))
{
}

QVector<WaitingRow> WaitingRowsFile::read()
{
    QFile file(m_path);
    m_exists = file.exists();
    if (!m_exists || HomeFiles::isNoFile(m_path) || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray content = file.read(maxBytes);
    int leftOut = 0;
    const QVector<WaitingRow> rows = WaitingRows::parse(content, &leftOut);
    m_complete = content.endsWith('\n');
    m_lines = rows.size();
    if (leftOut > 0)
        SystemLog::warning(tr("未写入的结果有%1条不能读取：%2，原文件保留为%3")
                               .arg(QString::number(leftOut), m_path, HomeFiles::copyAside(m_path)));
    return rows;
}

bool WaitingRowsFile::add(const WaitingRow& row)
{
    const QByteArray line = WaitingRows::lineOf(row);
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
        content += WaitingRows::lineOf(*row);
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
