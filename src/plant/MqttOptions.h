#pragma once

#include <QByteArray>
#include <QPair>
#include <QString>
#include <QVector>

struct MqttMessage
{
    QString topic; ///< empty: none
    QByteArray payload;
    int qos = 1;
    bool retain = false;
    QVector<QPair<QString, QString>> properties; ///< user properties
};

struct MqttTls
{
    bool on = false;
    QString authorities; ///< file with the certificates that the broker's is judged by; empty: the system's
    QString certificate; ///< this client's, with its key; both empty: none
    QString key;
};

/// How to reach a broker, and as whom.
struct MqttOptions
{
    QString host;
    quint16 port = 1883;
    QString clientId;
    QString user; ///< empty: nobody
    QString password;
    MqttTls tls;
    quint32 sessionSeconds = 0; ///< how long the broker keeps what came for this client while it is away; 0: not at all
    int keepAlive = 15;         ///< seconds
    MqttMessage will;
};

/// Why there is no connection.
struct MqttTrouble
{
    enum class Kind {
        Away,      ///< nobody answers there, or the connection broke: it is tried again, nobody has to do anything
        Tls,       ///< certificates
        Login,     ///< name or password, or no permission
        TakenOver, ///< another client connected with this one's number
        Settings   ///< what was set cannot be used, or the broker does not want it
    };

    Kind kind = Kind::Away;
    QString text; ///< a sentence for the user, with the remedy

    bool wantsEngineer() const { return kind != Kind::Away; }
};

/// What became of a message.
enum class MqttDelivery {
    Taken,
    NobodyThere, ///< the broker has nobody who wants it, and dropped it
    Refused,
    Lost ///< the connection ended before the broker acknowledged it
};
