#pragma once

#include "common/Background.h"
#include "results/data/Shifts.h"

#include <QSet>
#include <QTabWidget>

#include <functional>

class LogPage;
class PartsPage;
class QCheckBox;
class QTimer;
class QToolButton;
class StatisticsPage;

/// All pages over what a home recorded, in the cell's window or in a program of their own. Each reads when it comes
/// into sight, on threads. F5 reads anew what is shown, Ctrl+F goes to its text filter. GUI thread.
class ResultsView : public QTabWidget
{
    Q_OBJECT

public:
    explicit ResultsView(QWidget* parent = nullptr);
    ~ResultsView() override;

    /// `home`: without a separator at its end. Its shifts, columns and sizes come with it.
    void setHome(const QString& home);
    const QString& home() const { return m_home; }
    /// Takes over the shifts as they are set now.
    void readShifts();
    /// Who notes something of a part.
    void setUser(std::function<QString()> user);

    /// Reads the page in sight anew, and the others when they come into sight.
    void refresh();
    /// Today's parts of a station (0: both): all, or those that were not found or refused.
    void showDay(int station, bool failuresOnly);
    /// The part of a station at that moment (see PartTable), among its neighbours.
    void showPart(int station, qint64 wall);

    PartsPage& parts() { return *m_parts; }
    StatisticsPage& statistics() { return *m_statistics; }
    LogPage& logs() { return *m_logs; }

    /// Of a window with nothing but this.
    static QSize usualSize();

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void buildCorner();
    void connectPages();
    void setShifts(const Shifts& shifts);
    void retranslate();
    void readShown();
    void follow();

    QString m_home;
    QString m_shiftTimes = Shifts().toText();
    PartsPage* m_parts;
    StatisticsPage* m_statistics;
    LogPage* m_logs;
    QCheckBox* m_auto;
    QToolButton* m_refresh;
    QTimer* m_next;
    QSet<QWidget*> m_stale; ///< pages that are to be read when they come into sight
    int m_number = 0;       ///< of the home
    Background m_shifts;
};
