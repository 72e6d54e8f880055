#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// What the simulated PLC was asked to do.
struct SimOptions
{
    QString link; ///< either this, `port` or `listen`
    QString port;
    QString listen;
    QString nameFile; ///< gets the name of the line's other end
    int baudRate = 115200;
    bool verbose = false;

    QString script;           ///< a script's file; empty for none
    std::optional<int> parts; ///< parts to feed, 0 for endless; nothing for a script or a person's commands
    std::optional<int> cuts;  ///< times that the line is cut
    int awayMs = 1500;        ///< for so long, at most
    int seed = 0;             ///< of the moments of the cuts
    QString pidFile;          ///< holds the program's process id; empty when not given
    QString truth[2];         ///< folders of the stations' images
    QString home;             ///< the program's home; empty when not given
    QString road;             ///< file with the program's timing lines
    QString json;             ///< where the report goes as JSON
    double cameraDelayMs = 0;
    int intervalMs = 0;         ///< from part to part, at least
    int timeoutMs = 5000;       ///< for an answer
    int startTimeoutMs = 60000; ///< for the program's first heartbeat
    int filterMs = 0;           ///< the program's filter time
    int refused = 0;            ///< triggers to be refused, afterwards

    /// Reads a command line without the program's name; false with what is wrong with it.
    bool parse(const QStringList& arguments, QString* error);
    /// The text of --help, commands of the standard input included.
    static QString help();
};
