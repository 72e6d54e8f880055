#pragma once

#include "collect/Storekeeper.h"
#include "plant/MqttOptions.h"

#include <QElapsedTimer>
#include <QHash>
#include <QVariant>

#include <condition_variable>
#include <thread>
#include <vector>

class MqttSession;

/// Takes what all cells of a broker publish into the database. Rows and pictures come by shared subscriptions, so that
/// the intakes of this and of other collectors divide them; the broker learns that one arrived when it is stored. State
/// comes to every collector, since the last word counts.
class Collector
{
public:
    struct Options
    {
        MqttOptions broker; ///< its client id begins that of each session
        QString group = QStringLiteral("+");
        std::string database;
        int intakes = 6;
    };

    /// `health` outlives it.
    Collector(Options options, Health& health);
    ~Collector();

    void start();
    /// Returns within some seconds. False when something that the broker delivered could not be stored any more: then
    /// the process has to end at once, lest the broker take it for stored.
    bool stop();

private:
    struct Intake;

    /// Whether no backlog waits at the broker: then what is missing is not merely late.
    bool isCurrent() const;
    void addIntake(const QString& name, const QStringList& filters, bool rouses);
    void command(const QString& group, const QString& cell, const char* metric, const QVariant& value);
    void askBirth(const QString& group, const QString& cell);
    /// The thread that asks for what is missing and applies the retention.
    void keepHouse();
    void keepHouseOnce(Database& database, bool retention);

    const Options m_options;
    Health& m_health;
    std::vector<std::unique_ptr<Intake>> m_intakes; // the first is that of the state

    std::mutex m_mutex; // protects the following
    std::condition_variable m_changed;
    bool m_ending = false;
    bool m_rouseAll = false;
    QHash<QString, qint64> m_birthsAsked; // ms of m_clock
    QElapsedTimer m_clock;
    std::thread m_house;
};
