#pragma once

#include <QImage>
#include <QString>
#include <QVariantMap>

/// One trigger of a station, from the PLC's frame to its reply. What held when it was accepted judges its part, and its
/// answer goes out on the line that it came in on, or not at all. It ends exactly once.
struct Trigger
{
    enum Source {
        Plc,
        Test ///< answers nobody, and counts nowhere
    };

    quint64 number = 0; ///< counts the triggers of this start
    Source source = Plc;
    int station = 0;
    QString camera; ///< its key
    QString solution;
    QString model;
    qint32 plcIndex = 0;   ///< of the model, as the PLC gave it last
    quint64 session = 0;   ///< of the line, see ISerialSession
    qint64 acceptedNs = 0; ///< when its frame came, by the scheduler
    qint64 imageNs = 0;    ///< when its image came; 0: it did not
    bool answered = false; ///< as not found, while the GUI thread was held up; see StandIn
};

/// Why a trigger that was accepted ends without a result.
enum class Failure {
    NoImage,  ///< the camera says so, or what it delivered is no image
    Overdue,  ///< nothing came in time: no image
    NoResult, ///< nothing came in time: no result; or one that names another solution
};

/// Why a trigger was not accepted.
enum class Refusal {
    NoModel, ///< the PLC's index has none
    Overrun, ///< too many wait already
};

Q_DECLARE_METATYPE(Trigger)
