#pragma once

#include "SimStore.h"
#include "plant/MqttOptions.h"
#include "plant/RowBatch.h"

#include <QObject>
#include <QQueue>

#include <functional>
#include <memory>

class MqttSession;

/// One simulated cell: it records parts, and tells the plant of them as plant-schema.md has it. One thread; its session
/// has another.
class SimCell : public QObject
{
    Q_OBJECT

public:
    struct Options
    {
        MqttOptions broker;
        QString group;
        double rate = 2; ///< parts a second
        int zoneSeconds = 8 * 3600;
        bool pictures = true;
    };

    SimCell(int number, const Options& options, SimStore& store);
    ~SimCell() override;

    void begin();
    void stop();
    /// Records what is due and publishes what waits; `record`: whether there is still production.
    void step(qint64 now, bool record);

private:
    MqttOptions connection() const;
    void onConnected();
    void onCommand(const QByteArray& payload);
    void record(qint64 now);
    void publishState(bool birth);
    void publishRows(int stream);
    void publishResends();
    QByteArray batch(int stream, qint64 after, qint64 upTo, const QVector<SimStore::Row>& rows) const;
    bool send(const QString& topic, const QByteArray& payload, std::function<void(bool)> taken);
    void sendPictures(const QVector<SimStore::Row>& rows);
    void count(const PlantPart& part);

    const int m_number;
    const Options m_options;
    const QString m_name;
    SimStore& m_store;
    SimStore::Cell m_cell;
    std::unique_ptr<MqttSession> m_session;

    bool m_connected = false;
    int m_generation = 0;            // of the connection: an answer of an earlier one counts no more
    qint64 m_inFlight[2] = {-1, -1}; // upTo of the batch on its way; -1: none
    QQueue<ResendRequest> m_resends;
    bool m_resending = false;
    int m_seq = 0;
    qint64 m_nextPart = 0;
    qint64 m_nextLine = 0;
    qint64 m_nextState = 0;
    qint64 m_day = 0;
    uint m_counts[2][3] = {};
};
