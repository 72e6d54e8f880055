#pragma once

#include <QString>
#include <QVector>

class Cell;
class ksGlobalConfig;
class ksSysConfig;

/// How the cell stands, as far as an operator has to see it at a glance.
struct CellState
{
    struct Camera
    {
        int station = 1;
        QString key; ///< empty: none is set up
        bool isGood = true;
    };

    bool isLinkKnown = false; ///< the PLC had time to be heard
    bool isLinkUp = false;
    QVector<Camera> cameras;
    bool isOnline = true;
    bool isTesting = false;
    qint64 freeMiB = -1; ///< -1: not known
    bool isDiskGood = true;
    QString user; ///< empty: nobody
    bool isRegistered = true;
    bool keepsImages = false; ///< of at least one station
    bool isRecording = true;  ///< results and images reach the disk
    int resultsWaiting = 0;
    int alarms = 0;            ///< that ask for somebody
    bool isForwarding = false; ///< is switched on
    bool isPlantThere = false; ///< the broker is connected, and takes what comes
    bool isPlantTroubled = false;
    qint64 plantWaiting = 0; ///< rows
    QString plantHint;

    /// What the cell, its alarms and its settings say; link, test, user and licence stay as they are.
    void read(Cell& cell, const ksGlobalConfig& config, const ksSysConfig& settings);
};

/// One thing of the cell on the screen: caption, a word for its state, and how good that is.
struct StateFace
{
    enum Sign { Off, Good, Caution, Bad };

    const char* name; ///< object name of its pill
    const char* icon; ///< of the tool bar's family
    const char* page; ///< the action that opens where it is looked after
    QString caption;
    QString word;
    Sign sign = Off;
    QString hint;
};

/// The faces of a state in their order, in the present language. Pure.
QVector<StateFace> facesOf(const CellState& state);
