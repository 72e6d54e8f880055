#pragma once

#include <QTabWidget>

class LogPage;
class PartsPage;
class Shifts;
class StatisticsPage;

/// All pages over what a home recorded, in the cell's window or in a program of their own.
class ResultsView : public QTabWidget
{
    Q_OBJECT

public:
    explicit ResultsView(QWidget* parent = nullptr);

    /// `home`: without a separator at its end.
    void setHome(const QString& home);
    void setShifts(const Shifts& shifts);

    PartsPage& parts() { return *m_parts; }
    StatisticsPage& statistics() { return *m_statistics; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();

    PartsPage* m_parts;
    StatisticsPage* m_statistics;
    LogPage* m_logs;
};
