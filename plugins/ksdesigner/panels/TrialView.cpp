#include "TrialView.h"

#include "ui_TrialView.h"

#include <QSignalBlocker>

namespace {

enum Choice { Drawing, Bare, FirstStage };

} // namespace

TrialView::TrialView(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::TrialView>())
{
    m_ui->setupUi(this);
    m_ui->stageNote->setMinimumHeight(2 * fontMetrics().lineSpacing()); // a layout in a layout forgets wrapped lines
    connect(m_ui->stageBox, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &TrialView::showChoice);
    listStages();
    showChoice();
}

TrialView::~TrialView() = default;

ImageView* TrialView::view() const
{
    return m_ui->view;
}

bool TrialView::isShowingImage() const
{
    const int stage = m_ui->stageBox->currentIndex() - FirstStage;
    return !m_image.isNull() &&
           (stage < 0 || stage >= m_trial.stages.size() || m_trial.stages.at(stage).picture.isNull());
}

void TrialView::setImage(const QImage& image)
{
    m_image = image;
    m_trial = {};
    showChoice();
}

void TrialView::setTrial(const Trial& trial)
{
    m_trial = trial;
    listStages();
    showChoice();
}

void TrialView::setPicking(bool picking)
{
    m_picking = picking;
    m_ui->view->setPicking(picking);
    showChoice();
}

void TrialView::listStages()
{
    const QSignalBlocker quiet(m_ui->stageBox);
    const QString before = m_ui->stageBox->currentText();
    m_ui->stageBox->clear();
    m_ui->stageBox->addItems({tr("结果"), tr("原图")});
    for (const TrialStage& stage : qAsConst(m_trial.stages))
        m_ui->stageBox->addItem(stage.title);
    m_ui->stageBox->setCurrentIndex(qMax(0, m_ui->stageBox->findText(before)));
}

void TrialView::showChoice()
{
    const int choice = m_ui->stageBox->currentIndex();
    const bool drawn = !m_picking && choice == Drawing && !m_trial.result.image.isNull();
    m_ui->stageRow->setVisible(!m_image.isNull());
    m_ui->stageBox->setEnabled(!m_picking);
    m_ui->stageNote->clear();
    if (!m_picking && choice >= FirstStage && choice - FirstStage < m_trial.stages.size()) {
        showStage(m_trial.stages.at(choice - FirstStage));
        return;
    }
    m_ui->view->overlay()->setShapes({}, {});
    m_ui->view->setImage(drawn ? m_trial.result.image : m_image);
}

void TrialView::showStage(const TrialStage& stage)
{
    m_ui->view->setImage(stage.picture.isNull() ? m_image : stage.picture);
    m_ui->view->overlay()->setShapes(stage.circles, stage.points);
    m_ui->stageNote->setText(stage.note);
}
