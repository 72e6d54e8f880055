#include "workflow/CZdCtrl.h"

#include "workflow/Station.h"

#include <valvecell/IEngine.h>

CZdCtrl::CZdCtrl(IEngine* engine, const QString& baseDir, QObject* parent)
    : QObject(parent)
    , m_engine(engine)
    , m_indices(baseDir)
{
}

void CZdCtrl::initialise()
{
    m_indices.load();
    const QStringList solutions = m_engine ? m_engine->taskList()->list() : QStringList();
    for (const QString& name : solutions) {
        if (m_stations.contains(name))
            continue;
        m_names.append(name);
        m_stations.insert(name, new Station(name, m_indices, this));
    }
}

QStringList CZdCtrl::stationNames() const
{
    return m_names;
}

IStation* CZdCtrl::station(const QString& name) const
{
    return m_stations.value(name);
}

bool CZdCtrl::selectModel(const QString& station, const QString& model)
{
    if (model.isEmpty()) {
        qDebug("station=%s,model=%s", qUtf8Printable(station), qUtf8Printable(model));
        return false;
    }
    // Kept: the caller only learns about an empty model, not about an unknown station.
    if (Station* found = m_stations.value(station))
        found->setCurrentModel(model);
    return true;
}
