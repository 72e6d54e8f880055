#pragma once

#include "plant/MqttSession.h"

#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

class MqttTlsContext;
struct mosquitto;
struct mosquitto_message;
using mosquitto_property = struct mqtt5__property;

/// The thread of a session, and what it shares with the session. A search for the host's name may keep it longer than
/// stop() waits: it then ends by itself, and is heard no more.
class MqttSession::Line
{
public:
    explicit Line(Handlers handlers);
    ~Line();

    void start(const std::shared_ptr<Line>& self);
    void stop(bool withWill);
    void retryNow();
    void reconnect();
    bool isConnected() const;
    bool publish(const MqttMessage& message, Done done);
    bool subscribe(const QStringList& filters, bool others);

private:
    void run();
    void pause(int ms);
    /// One connection from its attempt to its end.
    void connectOnce();
    /// False when the options cannot be used; m_trouble then says why.
    bool prepare(mosquitto* client, const MqttOptions& options);
    bool prepareTls(mosquitto* client, const MqttOptions& options);
    /// Until the connection ends; the library's reason.
    int serve(mosquitto* client);
    void judge(int reason, const MqttOptions& options);
    void end(mosquitto* client);
    /// Runs a handler unless stop() is through.
    template <typename Call>
    void hand(const Call& call);

    void onConnect(int reason, bool kept);
    void onDisconnect(int reason);
    void onPublish(int id, int reason);
    void onSubscribe(int id, int reason);
    void onMessage(const mosquitto_message& message, const mosquitto_property* properties);
    static void listen(mosquitto* client);

    const Handlers m_handlers;

    mutable std::mutex m_mutex; // protects the following
    std::condition_variable m_changed;
    mosquitto* m_client = nullptr; // while it can be used by other threads
    bool m_connected = false;
    bool m_stopping = false;
    bool m_willWanted = false;
    bool m_dropped = false; // reconnect() was asked for
    bool m_hurried = false; // retryNow() was asked for
    bool m_running = false;
    std::map<int, Done> m_waiting;       // by the library's number of the message
    std::map<int, QStringList> m_wanted; // subscriptions not yet answered

    std::mutex m_handing; // held while a handler runs; protects m_deaf
    bool m_deaf = false;
    std::thread m_thread; // start() and stop() alone

    // Of the thread alone.
    std::unique_ptr<MqttTlsContext> m_tls;
    MqttTrouble m_trouble;
    bool m_greeted = false; // the broker accepted the connection
};
