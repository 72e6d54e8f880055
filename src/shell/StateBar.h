#pragma once

#include "shell/CellState.h"

#include <QFrame>
#include <QPointer>

class StatePill;

/// How the cell stands, in equal pills over the whole window; each opens the page where its matter is looked after.
/// What is on it comes by the setters and, at each refresh(), from the cell. GUI thread.
class StateBar : public QFrame
{
    Q_OBJECT

public:
    explicit StateBar(QWidget* parent = nullptr);

    /// Refreshes with every change of the alarms, too. All outlive the bar's use; the cell may go before the bar.
    void follow(Cell& cell, const ksGlobalConfig& config, const ksSysConfig& settings);
    /// The cameras that are shown: of the first station, or of both.
    void setStations(int count);

    // What others know; shown at once.
    void setLink(bool up);
    void setTesting(bool testing);
    void setUser(const QString& name);
    void setRegistered(bool registered);

    const CellState& state() const { return m_state; }

public slots:
    /// To be called about once a second.
    void refresh();

signals:
    /// A page is wanted, by the name of the action that opens it.
    void pageWanted(const QString& action);
    /// Test or offline mode began or ended.
    void modeChanged();

protected:
    void changeEvent(QEvent* event) override;

private:
    void show(const CellState& state);
    void setPills(int count);

    QPointer<QObject> m_alive; ///< the cell
    Cell* m_cell = nullptr;
    const ksGlobalConfig* m_config = nullptr;
    const ksSysConfig* m_settings = nullptr;
    CellState m_state;
    QVector<StatePill*> m_pills;
};
