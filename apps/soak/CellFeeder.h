#pragma once

#include "CellTruth.h"
#include "PlcLine.h"
#include "TriggerLedger.h"

#include <array>

/// Feeds both stations at a rate, as the PLC of a cell in production does, and enters in a ledger what comes of it:
/// each station has a part at its own times, and the next only when the last one is answered, unless it is to be
/// flooded.
class CellFeeder : public QObject
{
    Q_OBJECT

public:
    struct Pace
    {
        double partsPerSecond = 4; ///< of both stations together
        bool flood = false;        ///< triggers come whether the station is ready or not
        int refusalEvery = 0;      ///< every so many parts of a station one has an index of no model; 0: none
    };

    /// `images` of station 1 and 2, as the cameras deliver them from the program's start on.
    CellFeeder(PlcLine& line, TriggerLedger& ledger, std::array<ImageCycle, 2> images, Pace pace);

    /// From now on.
    void setPace(Pace pace);
    /// The program is there. `fresh`: it was started, so that its cameras begin anew.
    void start(bool fresh);
    /// No trigger from now on.
    void stop();
    bool isFeeding() const { return m_feeding; }
    /// The cameras' order is not known any more; the parts are announced as of the model that fits all.
    void loseOrder();

signals:
    void answered(int station);

private:
    struct Station
    {
        ImageCycle images;
        QTimer timer;
        int fed = 0;
        int announced = -1;
        bool due = false; ///< its time came while the last part was not answered
    };

    void onDue(int station);
    void trigger(int station);
    void announce();
    int nextIndex(const Station& station) const;
    void onFrame(const SComFrame& frame, qint64 atNs);
    void onAnswer(int station, const PlcFrames::Answer& answer, qint64 atNs);

    PlcLine& m_line;
    TriggerLedger& m_ledger;
    const std::array<ImageCycle, 2> m_fromStart;
    Pace m_pace;
    std::array<Station, 2> m_stations;
    bool m_feeding = false;
    bool m_ordered = false; ///< the cameras deliver what the cycles say
};
