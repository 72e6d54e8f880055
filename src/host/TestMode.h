#pragma once

class AutoTrigger;
class TriggerDispatch;

/// What the test mode does: a trigger at one station, or a row of triggers. GUI thread.
class TestMode
{
public:
    /// Both outlive the test mode.
    TestMode(AutoTrigger& row, TriggerDispatch& dispatch)
        : m_row(row)
        , m_dispatch(dispatch)
    {
    }

    /// Between the triggers of the next row, milliseconds.
    void setInterval(int milliseconds) { m_intervalMs = milliseconds; }
    /// One of QTestWidget::TestMode.
    void enter(int mode);

private:
    AutoTrigger& m_row;
    TriggerDispatch& m_dispatch;
    int m_intervalMs = 1000;
};
