#include "shell/StateBar.h"

#include "shell/StatePill.h"
#include "workflow/Cell.h"

#include <QEvent>
#include <QHBoxLayout>

StateBar::StateBar(QWidget* parent)
    : QFrame(parent)
{
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(6, 4, 6, 4);
    row->setSpacing(4);
    setStations(2);
}

void StateBar::follow(Cell& cell, const ksGlobalConfig& config, const ksSysConfig& settings)
{
    m_alive = &cell;
    m_cell = &cell;
    m_config = &config;
    m_settings = &settings;
    connect(&cell.alarms(), &AlarmBook::changed, this, &StateBar::refresh);
    connect(&cell, &Cell::testRunningChanged, this, &StateBar::setTesting);
    refresh();
}

void StateBar::setStations(int count)
{
    m_state.cameras.resize(count);
    for (int i = 0; i < count; ++i)
        m_state.cameras[i].station = i + 1;
    refresh();
}

void StateBar::setLink(bool up)
{
    m_state.isLinkKnown = true;
    m_state.isLinkUp = up;
    refresh();
}

void StateBar::setTesting(bool testing)
{
    m_state.isTesting = testing;
    refresh();
    emit modeChanged();
}

void StateBar::setUser(const QString& name)
{
    m_state.user = name;
    refresh();
}

void StateBar::setRegistered(bool registered)
{
    m_state.isRegistered = registered;
    refresh();
}

void StateBar::refresh()
{
    const bool wasOnline = m_state.isOnline;
    if (m_alive)
        m_state.read(*m_cell, *m_config, *m_settings);
    show(m_state);
    if (wasOnline != m_state.isOnline)
        emit modeChanged();
}

void StateBar::show(const CellState& state)
{
    const QVector<StateFace> faces = facesOf(state);
    setPills(faces.size());
    for (int i = 0; i < faces.size(); ++i)
        m_pills[i]->setFace(faces[i]);
}

/// Equal ones: they stretch alike, whatever they say.
void StateBar::setPills(int count)
{
    while (m_pills.size() > count)
        delete m_pills.takeLast();
    while (m_pills.size() < count) {
        auto* pill = new StatePill(this);
        static_cast<QHBoxLayout*>(layout())->addWidget(pill, 1);
        connect(pill, &StatePill::clicked, this, [this, pill] { emit pageWanted(QLatin1String(pill->page())); });
        m_pills << pill;
    }
}

void StateBar::changeEvent(QEvent* event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        show(m_state);
}
