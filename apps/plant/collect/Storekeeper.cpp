#include "collect/Storekeeper.h"

#include "Health.h"
#include "collect/StateMetrics.h"
#include "plant/MqttOptions.h"
#include "plant/RowBatch.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

#include <pqxx/pqxx>

namespace {

constexpr int largestPicture = 8 * 1024 * 1024;
constexpr const char* notBorn = "VC003"; // no error of the database, but handled as one

pqxx::binarystring bytesOf(const QByteArray& bytes)
{
    return pqxx::binarystring(bytes.constData(), static_cast<size_t>(bytes.size()));
}

QString property(const MqttMessage& message, const char* name)
{
    for (const auto& [key, value] : message.properties)
        if (key == QLatin1String(name))
            return value;
    return {};
}

bool isNewer(const QByteArray& json)
{
    return QJsonDocument::fromJson(json).object().value(QLatin1String("v")).toInt() > PlantTopics::schemaVersion;
}

std::function<void(pqxx::transaction_base&)> storePicture(const PlantTopics::Topic& topic, const MqttMessage& message,
                                                          QString* detail)
{
    const QByteArray& jpeg = message.payload;
    if (!jpeg.startsWith("\xff\xd8") || jpeg.size() > largestPicture) {
        *detail = QStringLiteral("no JPEG of at most %1 bytes").arg(largestPicture);
        return {};
    }
    return [topic, message](pqxx::transaction_base& work) {
        work.exec_params("SELECT store_picture($1, $2, $3, $4, $5, $6, $7, $8)", topic.group.toStdString(),
                         topic.cell.toStdString(), property(message, "cellId").toStdString(),
                         property(message, "epoch").toStdString(), property(message, "row").toLongLong(),
                         property(message, "width").toInt(), property(message, "height").toInt(),
                         bytesOf(message.payload));
    };
}

std::function<void(pqxx::transaction_base&)> noteState(const PlantTopics::Topic& topic, const QByteArray& payload,
                                                       QString* detail)
{
    const std::optional<QByteArray> metrics = StateMetrics::json(topic, payload, detail);
    if (!metrics)
        return {};
    if (topic.kind == PlantTopics::Kind::Death)
        return [topic, metrics](pqxx::transaction_base& work) {
            work.exec_params("SELECT note_death($1, $2, $3)", topic.group.toStdString(), topic.cell.toStdString(),
                             metrics->toStdString());
        };
    return [topic, metrics](pqxx::transaction_base& work) {
        const pqxx::result heard =
            work.exec_params("SELECT note_metrics($1, $2, $3, $4)", topic.group.toStdString(), topic.cell.toStdString(),
                             topic.kind == PlantTopics::Kind::Birth, metrics->toStdString());
        if (!heard[0][0].as<bool>())
            throw pqxx::sql_error("no birth is known", {}, notBorn);
    };
}

QString reasonOf(const std::string& code)
{
    if (code == "VC001")
        return QStringLiteral("identity");
    return code == "VC002" ? QStringLiteral("range") : QStringLiteral("damaged");
}

} // namespace

Storekeeper::Storekeeper(std::string database, Health& health, std::function<void(const Unheard&)> unheard)
    : m_database(std::move(database))
    , m_health(health)
    , m_unheard(std::move(unheard))
{
}

bool Storekeeper::store(const MqttMessage& message)
{
    QString reason;
    QString detail;
    m_lastAge = -1;
    const Work work = workFor(message, &reason, &detail);
    if (!work)
        return keepAside(message, reason, detail);
    DatabaseError refused;
    if (!run(work, &refused))
        return false;
    if (refused.code == notBorn) {
        const std::optional<PlantTopics::Topic> topic = PlantTopics::parse(message.topic);
        m_unheard({topic->group, topic->cell});
        return true;
    }
    return refused.code.empty() || keepAside(message, reasonOf(refused.code), refused.text);
}

Storekeeper::Work Storekeeper::storeRows(const PlantTopics::Topic& topic, const QByteArray& payload,
                                         QString* detail) const
{
    const std::optional<RowBatch> batch = RowBatch::decode(payload, detail);
    if (!batch)
        return {};
    if (batch->stream != topic.leaf) {
        *detail = QStringLiteral("stream: %1 on the topic of %2").arg(batch->stream, topic.leaf);
        return {};
    }
    if (batch->size() > 0)
        m_lastAge = QDateTime::currentMSecsSinceEpoch() -
                    (batch->lines.isEmpty() ? batch->parts.last().created : batch->lines.last().created);
    return [topic, payload, batch = *batch](pqxx::transaction_base& work) {
        work.exec_params("SELECT store_batch($1, $2, $3, $4, $5, $6, $7, $8::jsonb -> 'rows')",
                         topic.group.toStdString(), topic.cell.toStdString(), batch.cellId.toStdString(),
                         batch.stream.toStdString(), batch.epoch.toStdString(), batch.after, batch.upTo,
                         payload.toStdString());
    };
}

Storekeeper::Work Storekeeper::workFor(const MqttMessage& message, QString* reason, QString* detail) const
{
    *reason = QStringLiteral("damaged");
    const std::optional<PlantTopics::Topic> topic = PlantTopics::parse(message.topic);
    if (!topic) {
        *detail = QStringLiteral("no topic of this schema");
        return {};
    }
    switch (topic->kind) {
    case PlantTopics::Kind::Rows: {
        const Work work = storeRows(*topic, message.payload, detail);
        if (!work && isNewer(message.payload))
            *reason = QStringLiteral("newer");
        return work;
    }
    case PlantTopics::Kind::Picture:
        return storePicture(*topic, message, detail);
    case PlantTopics::Kind::Birth:
    case PlantTopics::Kind::Data:
    case PlantTopics::Kind::Death:
        return noteState(*topic, message.payload, detail);
    default:
        *detail = QStringLiteral("not for a plant");
        return {};
    }
}

bool Storekeeper::keepAside(const MqttMessage& message, const QString& reason, const QString& detail)
{
    DatabaseError refused;
    const Work work = [&](pqxx::transaction_base& transaction) {
        QByteArray topic = message.topic.toUtf8();
        topic.replace('\0', "");
        transaction.exec_params("SELECT keep_aside($1, $2, $3, $4)", topic.toStdString(), reason.toStdString(),
                                detail.toStdString(), bytesOf(message.payload));
    };
    return run(work, &refused);
}

bool Storekeeper::run(const Work& work, DatabaseError* refused)
{
    for (int pauseMs = 100; !m_givenUp; pauseMs = qMin(2 * pauseMs, 3000)) {
        try {
            pqxx::nontransaction transaction(m_database.connection());
            work(transaction);
            m_health.set(QStringLiteral("database"), {});
            return true;
        } catch (const std::exception&) {
            const DatabaseError error = databaseError();
            if (error.fault == DatabaseFault::Refused) {
                *refused = error;
                return true;
            }
            report(error);
        }
        m_database.drop();
        for (int ms = 0; ms < pauseMs && !m_givenUp; ms += 50)
            QThread::msleep(50);
    }
    return false;
}

void Storekeeper::report(const DatabaseError& error)
{
    m_health.set(QStringLiteral("database"), error.trouble());
    qWarning("database: %s", qUtf8Printable(error.text));
}
