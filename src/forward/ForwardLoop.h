#pragma once

#include "config/ForwardConfig.h"
#include "forward/ForwardState.h"
#include "forward/ForwardStatus.h"
#include "forward/PictureQueue.h"
#include "forward/RowStream.h"
#include "forward/StateReport.h"
#include "forward/TokenBucket.h"
#include "plant/MqttSession.h"

#include <QElapsedTimer>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

/// The forwarder's thread.
class ForwardLoop
{
public:
    ForwardLoop(QString home, const ForwardConfig& config);
    ~ForwardLoop();

    // Any thread.
    void post(std::function<void()> work);
    ForwardStatus status() const;

    // All others: of the loop's thread.
    void setFigures(const QVector<Sparkplug::Metric>& figures);

private:
    void run();
    /// Runs what was posted; false when it is the end. Waits so long for something to be posted.
    bool takePosted(int ms);
    void open();
    void step();
    void look();
    void report();
    void sendRows();
    bool sendOne();
    bool send(RowStream& stream, const RowBatch& batch, bool asked);
    void sendPicture();
    void delivered(const QString& stream, quint64 number, MqttDelivery how);
    void notePictures(const RowBatch& batch);
    void save(bool now);
    void showStatus();

    void onConnected();
    void onDisconnected(const MqttTrouble& trouble);
    void onReceived(const MqttMessage& message);
    void onTwin(bool copied);
    void onStrange(const QString& why);
    void setTrouble(const QString& text, bool wantsEngineer);

    MqttOptions options();
    MqttSession::Handlers handlers();
    QString topic(int kind, const QString& leaf = QString()) const;
    qint64 nowNs() const { return m_clock.nsecsElapsed(); }
    RowStream* stream(const QString& name);
    /// Rows of all streams that were not acknowledged.
    qint64 waiting() const;

    const QString m_home;
    const ForwardConfig m_config;
    const QString m_instance = ForwardState::freshId(); ///< of this run: a copied home is seen by it
    QElapsedTimer m_clock;

    mutable std::mutex m_mutex; // protects the following
    std::condition_variable m_posted;
    std::vector<std::function<void()>> m_work;
    bool m_ending = false;
    ForwardStatus m_status;

    std::atomic<quint64> m_sessions{0};
    MqttOptions m_options; ///< set before the session begins
    ForwardState m_state;
    std::deque<RowStream> m_streams;
    StateReport m_report;
    PictureQueue m_pictures;
    TokenBucket m_bucket;
    std::unique_ptr<MqttSession> m_session;
    bool m_connected = false;
    bool m_birthDue = false;
    bool m_dirty = false;
    quint64 m_number = 0;
    std::size_t m_turn = 0;
    int m_strange = 0;
    qint64 m_pausedUntil = 0; ///< ns; so the other times
    qint64 m_twinUntil = 0;
    qint64 m_nextBirth = 0;
    qint64 m_nextLook = 0;
    qint64 m_nextOpening = 0;
    qint64 m_nextSave = 0;
    qint64 m_nextRowsReport = 0;
    QString m_trouble;
    bool m_wantsEngineer = false;
    std::thread m_thread; // last
};
