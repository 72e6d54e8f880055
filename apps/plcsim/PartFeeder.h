#pragma once

#include "PartReport.h"
#include "TriggerExchange.h"

#include <array>

/// Feeds parts to stations 1 and 2 in turn, as the PLC of a cell does: the model indices when they change, then the
/// trigger; the next part when the last one is answered or given up.
class PartFeeder : public QObject
{
    Q_OBJECT

public:
    /// `images` of station 1 and 2. `parts` 0 feeds on until stop().
    PartFeeder(PlcLine& line, TriggerExchange& exchange, std::array<ImageCycle, 2> images, int parts);

    void start();
    /// Feeds no further part; one that is under way is given up.
    void stop();

signals:
    void partDone(const PartRow& row);
    void finished();

private:
    void next();
    /// Sends the model indices of both stations' next images, if one of them has changed.
    void announceModels();
    void onDone(const ExchangeResult& result);

    PlcLine& m_line;
    TriggerExchange& m_exchange;
    std::array<ImageCycle, 2> m_images;
    const int m_parts;
    int m_fed = 0;
    bool m_running = false;
    std::array<int, 2> m_announced{-1, -1};
};

/// Triggers both stations in turn with a model index that no table has; each is to be refused.
class RefusalProbe : public QObject
{
    Q_OBJECT

public:
    static constexpr int absentIndex = 98;

    RefusalProbe(PlcLine& line, TriggerExchange& exchange, int count);

    void start();
    /// Ends it early.
    void stop();
    const RefusalResult& result() const { return m_result; }

signals:
    void finished();

private:
    void next();
    void onDone(const ExchangeResult& result);

    PlcLine& m_line;
    TriggerExchange& m_exchange;
    const int m_count;
    bool m_running = false;
    RefusalResult m_result;
};
