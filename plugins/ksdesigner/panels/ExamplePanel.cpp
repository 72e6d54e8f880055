#include "ExamplePanel.h"

#include "common/forms/InlineMessage.h"
#include "model/ModelDrafts.h"
#include "model/ParameterRules.h"
#include "ui_ExamplePanel.h"

#include <QScrollBar>
#include <QShortcut>

namespace {

constexpr int side = 48; // pixels of a picture on the screen

void fill(QListWidget* strip, const QVector<IModelExamples::Example>& examples)
{
    strip->clear();
    for (const IModelExamples::Example& example : examples) {
        auto* item = new QListWidgetItem(QIcon(QPixmap::fromImage(example.picture)), QString(), strip);
        item->setToolTip(example.source);
    }
    // A picture and the scroll bar below it.
    strip->setFixedHeight(side + 12 + strip->horizontalScrollBar()->sizeHint().height());
}

/// As exact as anybody reads it, so that a line is no wider than the panel.
QString shortNumber(double value)
{
    return QString::number(value, 'f', value < 100 ? 2 : 1);
}

} // namespace

ExamplePanel::ExamplePanel(ExampleStore* examples, ModelDrafts* drafts, QWidget* parent)
    : QWidget(parent)
    , m_examples(examples)
    , m_drafts(drafts)
    , m_ui(std::make_unique<Ui::ExamplePanel>())
{
    m_ui->setupUi(this);
    for (QListWidget* strip : {m_ui->holeList, m_ui->rejectedList}) {
        QListWidget* other = strip == m_ui->holeList ? m_ui->rejectedList : m_ui->holeList;
        strip->setIconSize({side, side});
        connect(strip, &QListWidget::itemSelectionChanged, this, [this, strip, other] {
            // One button removes: only one strip can have the choice.
            if (!strip->selectedItems().isEmpty())
                other->clearSelection();
            updateButtons();
        });
        auto* key = new QShortcut(QKeySequence::Delete, strip, nullptr, nullptr, Qt::WidgetShortcut);
        connect(key, &QShortcut::activated, this, &ExamplePanel::remove);
    }
    connect(m_ui->forgetButton, &QPushButton::clicked, this, &ExamplePanel::remove);
    connect(m_ui->applyButton, &QPushButton::clicked, this, &ExamplePanel::apply);
    connect(m_examples, &ExampleStore::changed, this, [this](const ModelId& id) {
        if (id == m_id)
            refresh();
    });
    connect(m_drafts, &ModelDrafts::changed, this, [this](const ModelId& id) {
        if (id == m_id)
            showProposal();
    });
    refresh();
}

ExamplePanel::~ExamplePanel() = default;

void ExamplePanel::setModel(const ModelId& id)
{
    m_id = id;
    refresh();
}

void ExamplePanel::refresh()
{
    setVisible(m_examples->offered() && !m_id.isNull() && !m_drafts->isBuiltIn(m_id));
    const IModelExamples::Examples known = m_examples->of(m_id);
    fill(m_ui->holeList, known.holes);
    fill(m_ui->rejectedList, known.rejected);
    m_ui->holeCaption->setText(tr("孔示例：%1").arg(known.holes.size()));
    m_ui->rejectedCaption->setText(tr("误认示例：%1").arg(known.rejected.size()));
    m_ui->trouble->setText(known.trouble);
    m_ui->trouble->setVisible(!known.trouble.isEmpty());
    setTone(m_ui->trouble, Tone::Error);
    updateButtons();
    showProposal();
}

void ExamplePanel::showProposal()
{
    QString reason;
    const QVariantMap proposal = m_id.isNull() ? QVariantMap() : m_examples->proposal(m_id, &reason);
    const QVariantMap stored = m_drafts->stored(m_id);
    const QVariantMap present = m_drafts->parameters(m_id);
    m_proposed.clear();
    for (auto it = proposal.begin(); it != proposal.end(); ++it) {
        if (stored.value(it.key()) != it.value())
            m_proposed.insert(it.key(), it.value());
    }
    QStringList lines;
    for (const QString& name : ParameterRules::lines(proposal)) {
        const QString tolerance = name + ParameterRules::toleranceSuffix;
        if (proposal.contains(tolerance))
            lines.append(QStringLiteral("%1 %2 ±\u00a0%3\u00a0%")
                             .arg(ParameterRules::label(name), shortNumber(proposal.value(name).toDouble()),
                                  ParameterRules::textOf(tolerance, proposal.value(tolerance))));
    }
    m_ui->proposal->setText(lines.isEmpty() ? reason : tr("建议尺寸（px）：") + QLatin1Char('\n') + lines.join('\n'));
    m_ui->applyButton->setVisible(!lines.isEmpty());
    bool applied = true;
    for (auto it = m_proposed.begin(); it != m_proposed.end(); ++it)
        applied = applied && present.value(it.key()) == it.value();
    m_ui->applyButton->setEnabled(!applied);
}

void ExamplePanel::updateButtons()
{
    m_ui->forgetButton->setEnabled(!m_ui->holeList->selectedItems().isEmpty() ||
                                   !m_ui->rejectedList->selectedItems().isEmpty());
}

void ExamplePanel::remove()
{
    const bool hole = !m_ui->holeList->selectedItems().isEmpty();
    QListWidget* strip = hole ? m_ui->holeList : m_ui->rejectedList;
    if (strip->selectedItems().isEmpty())
        return;
    QString error;
    const auto kind = hole ? ExampleStore::Kind::Hole : ExampleStore::Kind::Rejected;
    if (m_examples->remove(m_id, kind, strip->row(strip->selectedItems().first()), &error))
        emit done(tr("已从“%1”移除一个示例").arg(m_id.model));
    else
        emit failed(tr("未能移除示例：%1").arg(error));
}

void ExamplePanel::apply()
{
    QVariantMap parameters = m_drafts->parameters(m_id);
    for (auto it = m_proposed.begin(); it != m_proposed.end(); ++it)
        parameters.insert(it.key(), it.value());
    m_drafts->edit(m_id, parameters);
    emit done(tr("已填入建议的尺寸，请核对结果后保存"));
}
