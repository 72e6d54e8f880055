#include "plant/RowBatch.h"

#include "plant/FieldReader.h"
#include "plant/PlantTopics.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>

const QString RowBatch::partsStream = QStringLiteral("parts");
const QString RowBatch::logStream = QStringLiteral("log");

namespace {

/// JSON knows no more digits of an integer.
constexpr qint64 highestRow = Q_INT64_C(9007199254740991);

template <typename Value>
QJsonValue orNull(const std::optional<Value>& value)
{
    return value ? QJsonValue(*value) : QJsonValue(QJsonValue::Null);
}

QString timeText(qint64 ms)
{
    QString text = QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC).toString(Qt::ISODateWithMs);
    text.chop(1); // the Z
    return text;
}

QJsonObject jsonOf(const PlantPart& part)
{
    return {{QStringLiteral("row"), part.row},
            {QStringLiteral("creationTime"), timeText(part.created) + QLatin1Char('Z')},
            {QStringLiteral("localTime"), timeText(part.wall)},
            {QStringLiteral("station"), part.station},
            {QStringLiteral("externalRecipeId"), orNull(part.externalRecipeId)},
            {QStringLiteral("internalRecipeId"), part.internalRecipeId},
            {QStringLiteral("configurationId"), part.configurationId},
            {QStringLiteral("outcome"), part.outcome},
            {QStringLiteral("error"), part.error},
            {QStringLiteral("angle"), orNull(part.angle)},
            {QStringLiteral("x"), orNull(part.x)},
            {QStringLiteral("y"), orNull(part.y)},
            {QStringLiteral("score"), orNull(part.score)},
            {QStringLiteral("imageMs"), orNull(part.imageMs)},
            {QStringLiteral("resultMs"), orNull(part.resultMs)},
            {QStringLiteral("replyMs"), orNull(part.replyMs)},
            {QStringLiteral("user"), part.user},
            {QStringLiteral("picture"), part.picture}};
}

QJsonObject jsonOf(const PlantLine& line)
{
    return {{QStringLiteral("row"), line.row},
            {QStringLiteral("creationTime"), timeText(line.created) + QLatin1Char('Z')},
            {QStringLiteral("localTime"), timeText(line.wall)},
            {QStringLiteral("kind"), line.kind},
            {QStringLiteral("text"), line.text},
            {QStringLiteral("user"), line.user}};
}

template <typename Row>
void readCommon(FieldReader& fields, Row& row)
{
    row.row = fields.integer("row", 1, highestRow);
    row.created = fields.time("creationTime", "Z");
    row.wall = fields.time("localTime", "");
    row.user = fields.text("user");
}

PlantPart partOf(FieldReader& fields)
{
    PlantPart part;
    readCommon(fields, part);
    part.station = int(fields.integer("station", 0, 2));
    part.externalRecipeId = fields.integerOrNone("externalRecipeId");
    part.internalRecipeId = fields.text("internalRecipeId");
    part.configurationId = fields.text("configurationId");
    part.outcome =
        fields.word("outcome", {QStringLiteral("found"), QStringLiteral("notFound"), QStringLiteral("refused")});
    part.error = int(fields.integer("error", -1000000, 1000000));
    part.angle = fields.number("angle");
    part.x = fields.number("x");
    part.y = fields.number("y");
    part.score = fields.number("score");
    part.imageMs = fields.number("imageMs");
    part.resultMs = fields.number("resultMs");
    part.replyMs = fields.number("replyMs");
    part.picture = fields.flag("picture");
    return part;
}

PlantLine lineOf(FieldReader& fields)
{
    PlantLine line;
    readCommon(fields, line);
    line.kind = fields.word("kind", {QStringLiteral("alarm"), QStringLiteral("audit"), QStringLiteral("warning"),
                                     QStringLiteral("information")});
    line.text = fields.text("text", 65536);
    return line;
}

/// What is said of the rows that a message is about; readSpan() reads it.
QJsonObject spanOf(const QString& stream, const QString& epoch, qint64 after, qint64 upTo)
{
    return {{QStringLiteral("v"), PlantTopics::schemaVersion},
            {QStringLiteral("stream"), stream},
            {QStringLiteral("epoch"), epoch},
            {QStringLiteral("after"), after},
            {QStringLiteral("upTo"), upTo}};
}

void readSpan(FieldReader& fields, QString& stream, QString& epoch, qint64& after, qint64& upTo)
{
    stream = fields.word("stream", {RowBatch::partsStream, RowBatch::logStream});
    epoch = fields.uuid("epoch");
    after = fields.integer("after", 0, highestRow);
    upTo = fields.integer("upTo", after, highestRow);
}

/// The rows, in the order of their numbers, within what the batch says of itself.
void readRows(const QJsonArray& rows, RowBatch& batch, QString* error)
{
    qint64 before = batch.after;
    for (int i = 0; i < rows.size() && error->isEmpty(); ++i) {
        FieldReader fields(rows[i].toObject(), QStringLiteral("rows[%1].").arg(i), error);
        if (batch.stream == RowBatch::partsStream)
            batch.parts.append(partOf(fields));
        else
            batch.lines.append(lineOf(fields));
        const qint64 row = batch.lastRow();
        if (fields.ok() && (row <= before || row > batch.upTo))
            fields.fail("row", QCoreApplication::translate("Plant", "%1 不在 %2 与 %3 之间或次序不对")
                                   .arg(row)
                                   .arg(before + 1)
                                   .arg(batch.upTo));
        before = row;
    }
}

} // namespace

QByteArray RowBatch::encode() const
{
    QJsonArray rows;
    for (const PlantPart& part : parts)
        rows.append(jsonOf(part));
    for (const PlantLine& line : lines)
        rows.append(jsonOf(line));
    QJsonObject message = spanOf(stream, epoch, after, upTo);
    message[QStringLiteral("cellId")] = cellId;
    message[QStringLiteral("rows")] = rows;
    return QJsonDocument(message).toJson(QJsonDocument::Compact);
}

std::optional<RowBatch> RowBatch::decode(const QByteArray& json, QString* error)
{
    error->clear();
    const auto object = FieldReader::message(json, error);
    if (!object)
        return {};
    RowBatch batch;
    FieldReader fields(*object, {}, error);
    batch.cellId = fields.uuid("cellId");
    readSpan(fields, batch.stream, batch.epoch, batch.after, batch.upTo);
    const QJsonArray rows = fields.list("rows", mostRows);
    if (fields.ok())
        readRows(rows, batch, error);
    if (!fields.ok())
        return {};
    return batch;
}

QByteArray ResendRequest::encode() const
{
    return QJsonDocument(spanOf(stream, epoch, after, upTo)).toJson(QJsonDocument::Compact);
}

std::optional<ResendRequest> ResendRequest::decode(const QByteArray& json, QString* error)
{
    error->clear();
    const auto object = FieldReader::message(json, error);
    if (!object)
        return {};
    ResendRequest request;
    FieldReader fields(*object, {}, error);
    readSpan(fields, request.stream, request.epoch, request.after, request.upTo);
    if (!fields.ok())
        return {};
    return request;
}
