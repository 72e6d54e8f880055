#include "workflow/Station.h"

#include "workflow/CTrigDetector.h"
#include "workflow/PlcIndexTable.h"

Station::Station(QString name, const PlcIndexTable& indices, QObject* parent)
    : QObject(parent)
    , m_name(std::move(name))
    , m_indices(indices)
    , m_detector(new CTrigDetector(this))
{
    connect(this, &Station::sgUpdateLable, this, &Station::updateAll);
    connect(this, &Station::sgaddTrigCount, m_detector, &CTrigDetector::addTrigCount);
    connect(this, &Station::sgaddRevCount, m_detector, &CTrigDetector::addRevCount);
    connect(m_detector, &CTrigDetector::sgErrorTrig, this, &Station::onErrTrig);
    m_detector->startChecking();
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
    if (errorRun == 1)
        qWarning("station %s: no image came of the last trigger", qUtf8Printable(m_name));
}

QString Station::modelLabel() const
{
    // The blanks in the closing tags are kept: others read this text.
    const QString format = QStringLiteral("<html><body><h4><span style = '%1'>%2: %3_%4< /span>< /h4>< /body>< /html>");
    const QString style = m_model.isEmpty() ? QStringLiteral("color:#ff0000;") : QStringLiteral("color:#00a000;");
    return format.arg(style, QStringLiteral("当前检测型号"), m_name.toHtmlEscaped(), m_model.toHtmlEscaped());
}
