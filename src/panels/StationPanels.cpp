#include "panels/StationPanels.h"

#include "panels/LogPanel.h"
#include "panels/PartWords.h"
#include "panels/StationView.h"
#include "workflow/Cell.h"
#include "workflow/ResultHandler.h"

StationPanels::StationPanels(Panel first, Panel second, QObject* parent)
    : QObject(parent)
    , m_panels{first, second}
{
    for (int station = 1; station <= 2; ++station) {
        panel(station)->view->setStation(station);
        panel(station)->log->setStation(station);
        connect(panel(station)->view, &StationView::partsWanted, this,
                [this, station](bool failuresOnly) { emit partsWanted(station, failuresOnly); });
        connect(panel(station)->view, &StationView::partWanted, this,
                [this, station](qint64 wall) { emit partWanted(station, wall); });
        connect(panel(station)->view, &StationView::shiftResetWanted, this,
                [this, station] { emit shiftResetWanted(station); });
    }
    connect(&m_history, &StationHistory::changed, this, &StationPanels::showTally);
}

StationPanels::Panel* StationPanels::panel(int station)
{
    return station == 1 || station == 2 ? &m_panels[station - 1] : nullptr;
}

void StationPanels::follow(const Cell& cell, const QString& home)
{
    for (const Panel& each : m_panels)
        each.view->setHome(home);
    QTimer::singleShot(0, this, [this, home] { m_history.start(home); }); // when the start-up is through
    connect(&cell, &Cell::captureStarted, this, &StationPanels::showTrigger);
    connect(&cell, &Cell::captureRefused, this, &StationPanels::showReading);
    connect(&cell, &Cell::modelMissing, this, &StationPanels::showNoModel);
    connect(&cell, &Cell::pictureNamed, this, &StationPanels::showCaption);
    connect(&cell, &Cell::readingChanged, this, &StationPanels::showReading);
    connect(&cell, &Cell::countChanged, this, &StationPanels::showCount);
}

void StationPanels::showSecond(bool shown)
{
    m_panels[1].view->setVisible(shown);
    m_panels[1].log->setVisible(shown);
}

void StationPanels::soon(int station, const std::function<void(const Panel&)>& show)
{
    if (const Panel* own = panel(station))
        m_pace.later([show, own] { show(*own); });
}

void StationPanels::showImage(int station, const QImage& image)
{
    soon(station, [image](const Panel& own) { own.view->setImage(image); });
}

void StationPanels::showReading(int station, const StationReading& reading)
{
    soon(station, [this, station, reading](const Panel&) { showPart(station, reading); });
}

/// A test's part is shown and counts nowhere.
void StationPanels::showPart(int station, const StationReading& reading)
{
    const PartRow part = PartWords::rowOf(station, reading);
    StationView* view = panel(station)->view;
    view->setPart(part, reading.test);
    if (!reading.test)
        m_history.add(station, part, !part.picture().isEmpty() || view->hasPictureOfPart());
}

void StationPanels::showTally(int station)
{
    panel(station)->view->setTally(m_history.of(station));
}

void StationPanels::showModelLabel(int station, const QString& richText)
{
    soon(station, [richText](const Panel& own) { own.view->setModelLabel(richText); });
}

void StationPanels::showCaption(int station, const QString& model)
{
    soon(station, [model](const Panel& own) { own.view->setCaption(model); });
}

void StationPanels::showNoModel(int station, int plcIndex)
{
    soon(station, [plcIndex](const Panel& own) { own.view->setNoModel(plcIndex); });
}

void StationPanels::showLog(int station, const QString& line)
{
    soon(station, [line](const Panel& own) { own.log->append(line); });
}

void StationPanels::showCount(int station, const DayCount& count)
{
    soon(station, [count](const Panel& own) { own.view->setCount(count); });
}

void StationPanels::showTrigger(int station)
{
    soon(station, [](const Panel& own) { own.view->triggered(); });
}
