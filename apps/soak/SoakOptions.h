#pragma once

#include <QString>
#include <QStringList>

/// What a soak is to do; see --help.
struct SoakOptions
{
    double hours = 0;
    int kills = 0;      ///< with it, instead of hours: only kills
    bool burst = false; ///< ten times the rate for a minute, or for the hours
    quint64 seed = 1;
    double rate = 4; ///< parts a second, of both stations together
    QStringList faults;
    bool networkCameras = false;
    bool pictures = true; ///< are archived
    QString home;         ///< empty: one of its own in a temporary folder
    QString json;
    QString programs; ///< folder of the programs
    bool spoil = false;

    /// False with a sentence when the arguments make no sense.
    bool parse(const QStringList& arguments, QString* error);
    static QString help();

    QString mode() const;
    double seconds() const { return hours * 3600; }
};
