#pragma once

#include "config/ForwardConfig.h"
#include "forward/ForwardStatus.h"
#include "plant/Sparkplug.h"

#include <memory>

class ForwardLoop;

/// Forwards the cell's records and its state to a broker, see docs/plant-schema.md, on a thread of its own at a low
/// priority that only reads the databases. What is not acknowledged goes again, also after a restart.
class Forwarder
{
public:
    /// `home`: without a separator at its end. Begins at once.
    Forwarder(const QString& home, const ForwardConfig& config);
    /// Announces the end to the plant; waits 3 s for it at most.
    ~Forwarder();

    // Any thread.

    /// How the cell stands: "Health/…", "Alarms", "Day/…", "Calibration/…". Only what differs is sent.
    void setFigures(const QVector<Sparkplug::Metric>& figures);
    ForwardStatus status() const;

private:
    const std::unique_ptr<ForwardLoop> m_loop;
};
