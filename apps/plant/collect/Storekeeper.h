#pragma once

#include "db/Database.h"
#include "plant/PlantTopics.h"

#include <QByteArray>

#include <atomic>
#include <functional>

class Health;
struct MqttMessage;

namespace pqxx {
class transaction_base;
}

/// Stores what cells publish: each message in one transaction, or else kept aside with the reason. One thread, but for
/// giveUp().
class Storekeeper
{
public:
    struct Unheard
    {
        QString group;
        QString cell;
    };
    /// `unheard`: a cell of which no birth is known speaks.
    Storekeeper(std::string database, Health& health, std::function<void(const Unheard&)> unheard);

    /// Returns when it is in the database, however long that takes; false when it was given up.
    bool store(const MqttMessage& message);
    /// How old the newest row of the batch that was stored last was; 0 when it was none of parts. Ms by the cell's
    /// clock.
    qint64 lastAge() const { return m_lastAge; }
    /// Ends a wait for a database that takes nothing; for good.
    void giveUp() { m_givenUp = true; }

private:
    using Work = std::function<void(pqxx::transaction_base&)>;

    /// What to run for the message; none: `reason` and `detail` say why it is kept aside.
    Work storeRows(const PlantTopics::Topic& topic, const QByteArray& payload, QString* detail) const;
    Work workFor(const MqttMessage& message, QString* reason, QString* detail) const;
    bool keepAside(const MqttMessage& message, const QString& reason, const QString& detail);
    /// False when given up. A refusal goes to `refused`.
    bool run(const Work& work, DatabaseError* refused);
    void report(const DatabaseError& error);

    Database m_database;
    Health& m_health;
    const std::function<void(const Unheard&)> m_unheard;
    std::atomic<bool> m_givenUp{false};
    mutable qint64 m_lastAge = -1;
};
