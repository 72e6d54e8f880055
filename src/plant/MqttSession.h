#pragma once

#include "plant/MqttOptions.h"

#include <QStringList>

#include <functional>
#include <memory>

/// A connection to a broker by MQTT 5 that is made anew when it breaks, after pauses of half a second to one and a
/// half; of half a minute while somebody has to mend something. Nothing is kept over a break: whoever publishes does it
/// again. Each attempt asks for its options, so that the last will may differ.
///
/// All handlers and completions run on a thread of the session's own, one at a time. The public functions are for any
/// thread, those handlers included, but for stop() and the destructor.
class MqttSession
{
public:
    struct Handlers
    {
        std::function<MqttOptions()> options;
        /// `kept`: the broker had kept the session.
        std::function<void(bool kept)> connected;
        /// Also of an attempt that failed.
        std::function<void(const MqttTrouble&)> disconnected;
        /// The broker learns that a message arrived when this returns: what is stored by then is never lost, and what
        /// is not comes again.
        std::function<void(const MqttMessage&)> received;
        /// The broker refused a subscription; may be left out.
        std::function<void(const QString& filter)> notSubscribed;
    };
    using Done = std::function<void(MqttDelivery)>;

    explicit MqttSession(Handlers handlers);
    /// stop() without the last will.
    ~MqttSession();

    void start();
    /// Ends for good; no handler runs afterwards. `withWill`: the broker publishes the last will as if the connection
    /// had broken. Waits for what is under way, 3 s at most.
    void stop(bool withWill = false);
    /// Ends the pause before the next attempt.
    void retryNow();
    /// Drops the connection and makes it anew with fresh options.
    void reconnect();

    bool isConnected() const;
    /// False when there is no connection, or the broker takes none of that size: `done` is not called then, else once.
    bool publish(const MqttMessage& message, Done done = {});
    /// With `others`, what this client publishes itself does not come back.
    bool subscribe(const QStringList& filters, bool others = false);

private:
    class Line;

    const std::shared_ptr<Line> m_line;
};
