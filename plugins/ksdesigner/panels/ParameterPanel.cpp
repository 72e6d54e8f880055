#include "ParameterPanel.h"

#include "common/Calibration.h"
#include "common/forms/InlineMessage.h"
#include "model/ModelDrafts.h"
#include "model/ParameterRules.h"
#include "ui_ParameterPanel.h"

#include <valvecell/HomeFiles.h>

#include <cmath>

namespace {

/// Of the station that runs the solution; 0 when none does or it is not calibrated. Reads a small file; GUI thread.
double millimetresPerPixel(const QString& solution)
{
    const QJsonObject config =
        HomeFiles::readJson(HomeFiles::home() + QStringLiteral("/user/globalConfig.json")).object;
    for (const int station : {1, 2}) {
        const double scale = Calibration::ofStation(config, station).mmPerPixel();
        const bool runs = config.value(QStringLiteral("station_solution_%1").arg(station)).toString() == solution;
        if (runs && scale > 0 && std::isfinite(scale))
            return scale;
    }
    return 0;
}

} // namespace

ParameterPanel::ParameterPanel(ModelDrafts* drafts, QWidget* parent)
    : QWidget(parent)
    , m_drafts(drafts)
    , m_ui(std::make_unique<Ui::ParameterPanel>())
{
    m_ui->setupUi(this);
    connect(m_ui->form, &ParameterForm::edited, this,
            [this](const QVariantMap& parameters) { m_drafts->edit(m_id, parameters); });
    connect(m_ui->saveButton, &QPushButton::clicked, this, &ParameterPanel::save);
    connect(m_ui->revertButton, &QPushButton::clicked, this, [this] { m_drafts->revert(m_id); });
    connect(m_drafts, &ModelDrafts::changed, this, [this](const ModelId& id) {
        if (id == m_id)
            refresh();
    });
    refresh();
}

ParameterPanel::~ParameterPanel() = default;

void ParameterPanel::setModel(const ModelId& id)
{
    m_id = id;
    m_ui->form->setScale(millimetresPerPixel(id.solution));
    refresh();
}

void ParameterPanel::refresh()
{
    m_ui->title->setText(m_id.isNull() ? tr("未选择型号") : m_id.model);
    m_ui->form->show(m_id.isNull() ? QVariantMap() : m_drafts->parameters(m_id),
                     m_id.isNull() || m_drafts->isBuiltIn(m_id));
    updateState();
}

void ParameterPanel::updateState()
{
    const bool builtIn = !m_id.isNull() && m_drafts->isBuiltIn(m_id);
    const bool unsaved = m_drafts->isUnsaved(m_id);
    m_ui->state->setText(builtIn ? tr("内置型号，只读。要修改请先复制。") : unsaved ? tr("有未保存的更改") : QString());
    setTone(m_ui->state, unsaved ? Tone::Warning : Tone::Plain);
    m_ui->saveButton->setEnabled(unsaved && ParameterRules::problems(m_drafts->parameters(m_id)).isEmpty());
    m_ui->revertButton->setEnabled(unsaved);
}

void ParameterPanel::save()
{
    QString error;
    if (m_drafts->save(m_id, &error)) {
        emit done(tr("已保存“%1”，下一次触发起生效").arg(m_id.model));
        return;
    }
    const QVariantMap refused = m_drafts->parameters(m_id);
    for (auto it = refused.begin(); it != refused.end(); ++it) {
        if (error.startsWith(it.key() + QLatin1Char(' ')))
            m_ui->form->markRefused(it.key(), tr("引擎不接受此值"));
    }
    emit failed(tr("未能保存“%1”：%2").arg(m_id.model, ParameterRules::readable(error)));
}
