#pragma once

#include "config/SmallConfig.h"

/// Where the cell's records are forwarded to, in "/user/plant.json" of a home:
///
///     {"plant_on": true, "plant_host": "broker.plant", "plant_port": 8883, "plant_group": "hall 2", "plant_cell": "7"}
///
/// An object of one's own may be used on any thread.
class ForwardConfig : public SmallConfig<ForwardConfig>
{
public:
    static constexpr const char* fileName = "/user/plant.json";
    static constexpr const char* keyGroup = "plant_";

    ForwardConfig() { setDefaults(); }

    bool on{};
    QString host;
    int port{};
    QString group;
    QString cell;      ///< the cell's name in its group
    QString loginFile; ///< two lines, user and password; empty: nobody
    bool tls{};
    QString authorities; ///< file; empty: the system's
    QString certificate; ///< file, with `key`; both empty: none
    QString key;
    int kilobytes{};        ///< a second, at most
    bool pictures{};        ///< of the parts that were not found or refused
    int pictureKilobytes{}; ///< a minute, at most
    int pictureWidth{};     ///< pixels, at most

    /// What is missing or of a wrong type gets its default; returns the latter, each with file and key. `home`: without
    /// a separator at its end.
    QStringList load(const QString& home);
    /// That of this program's home, with a warning for what is wrong.
    void load();

    /// Every key of the file; see ConfigVisitors.h.
    template <typename Visitor>
    void visit(Visitor& visitor)
    {
        visitor.setting({keyGroup, "on"}, on, false);
        visitor.setting({keyGroup, "host"}, host, QString());
        visitor.setting({keyGroup, "port"}, port, 1883, {1, 65535});
        visitor.setting({keyGroup, "group"}, group, QString());
        visitor.setting({keyGroup, "cell"}, cell, QString());
        visitor.setting({keyGroup, "login_file"}, loginFile, QString());
        visitor.setting({keyGroup, "tls"}, tls, false);
        visitor.setting({keyGroup, "ca_file"}, authorities, QString());
        visitor.setting({keyGroup, "certificate_file"}, certificate, QString());
        visitor.setting({keyGroup, "key_file"}, key, QString());
        visitor.setting({keyGroup, "kilobytes"}, kilobytes, 8000, {20, 1000000});
        visitor.setting({keyGroup, "pictures"}, pictures, false);
        visitor.setting({keyGroup, "picture_kilobytes"}, pictureKilobytes, 2000, {50, 1000000});
        visitor.setting({keyGroup, "picture_width"}, pictureWidth, 800, {160, 4096});
    }
};
