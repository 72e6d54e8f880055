#include "workflow/CZdCtrl.h"

#include <valvecell/IEngine.h>

Station::Station(QString name, const PlcIndexTable& indices, Scheduler& scheduler, CTrigDetector::BurstLimit burstLimit,
                 QObject* parent)
    : QObject(parent)
    , m_name(std::move(name))
    , m_indices(indices)
    , m_detector(scheduler, std::move(burstLimit))
{
    connect(this, &Station::sgUpdateLable, this, &Station::updateAll);
    connect(this, &Station::sgaddTrigCount, &m_detector, &CTrigDetector::addTrigCount);
    connect(this, &Station::sgaddRevCount, &m_detector, &CTrigDetector::addRevCount);
    connect(&m_detector, &CTrigDetector::sgErrorTrig, this, &Station::onErrTrig);
    m_detector.startChecking();
}

void Station::setCurrentModel(const QString& model)
{
    if (model.isEmpty()) {
        qDebug("setCurrentModel, model is empty");
        return;
    }
    m_model = model;
    updateAll();
}

void Station::modelOfPlcIndex(QString& model, qint32 index) const
{
    model = m_indices.modelOf(m_name, index);
}

void Station::updateAll()
{
    emit sgShowModeName(m_name, modelLabel());
}

void Station::onErrTrig(int errorRun)
{
    if (errorRun == 2)
        qWarning("%s", qUtf8Printable(tr("工位“%1”：上一次触发没有图像").arg(m_name)));
}

QString Station::modelLabel() const
{
    // The blanks in the closing tags are kept: others read this text.
    const QString format = QStringLiteral("<html><body><h4><span style = '%1'>%2: %3_%4< /span>< /h4>< /body>< /html>");
    const QString style = m_model.isEmpty() ? QStringLiteral("color:#ff0000;") : QStringLiteral("color:#00a000;");
    return format.arg(style, QStringLiteral("当前检测型号"), m_name.toHtmlEscaped(), m_model.toHtmlEscaped());
}

CZdCtrl::CZdCtrl(IEngine* engine, const QString& baseDir, Accounting accounting, QObject* parent)
    : QObject(parent)
    , m_engine(engine)
    , m_accounting(std::move(accounting))
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
        m_stations.insert(name, new Station(name, m_indices, m_accounting.scheduler, m_accounting.burstLimit, this));
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
