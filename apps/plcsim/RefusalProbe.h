#pragma once

#include "TriggerExchange.h"

#include <QVector>

/// What came of the triggers that have to be refused.
struct RefusalResult
{
    int asked = 0;
    int refused = 0; ///< answered with angle 999 and an "H" frame
    QVector<double> latencyMs;
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
