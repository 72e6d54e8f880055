#pragma once

#include "panels/ScreenPace.h"
#include "panels/StationHistory.h"

class Cell;
class LogPanel;
class QImage;
class StationView;
struct DayCount;
struct StationReading;

/// What each station has on the screen, by the number of the station; anything of another number is not shown. GUI
/// thread.
class StationPanels : public QObject
{
    Q_OBJECT

public:
    struct Panel
    {
        StationView* view;
        LogPanel* log;
    };

    /// The widgets outlive this object.
    StationPanels(Panel first, Panel second, QObject* parent);

    /// Shows what becomes of the parts of this cell, and what became of those before; `home` without a separator at its
    /// end.
    void follow(const Cell& cell, const QString& home);

    /// The second station's display; the first station takes its room while it is hidden.
    void showSecond(bool shown);

signals:
    /// The day's parts of a station: all of them, or those that were not found or refused.
    void partsWanted(int station, bool failuresOnly);
    /// The part of a station of that moment, see PartTable.
    void partWanted(int station, qint64 wall);
    /// The shift's counts of a station are to begin anew.
    void shiftResetWanted(int station);

public slots:
    void showImage(int station, const QImage& image);
    void showReading(int station, const StationReading& reading);
    /// The model of the picture that was shown last.
    void showCaption(int station, const QString& model);
    void showModelLabel(int station, const QString& richText);
    void showNoModel(int station, int plcIndex);
    void showLog(int station, const QString& line);
    void showCount(int station, const DayCount& count);
    void showTrigger(int station);
    /// Returns what the log is to have.
    AuditChanges resetShift(int station) { return m_history.resetShift(station); }

private:
    Panel* panel(int station);
    void showPart(int station, const StationReading& reading);
    void showTally(int station);
    /// Shows it a little later, so that the reply to the PLC goes first.
    void soon(int station, const std::function<void(const Panel&)>& show);

    ScreenPace m_pace;
    StationHistory m_history;
    Panel m_panels[2];
};
