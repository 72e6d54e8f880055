#include "common/FingerSize.h"
#include "common/ImageFile.h"
#include "common/forms/InlineMessage.h"
#include "guided/teaching/ArchivePictures.h"
#include "guided/teaching/TeachingPages.h"

#include <valvecell/IModelTrial.h>

#include <QCheckBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int triedPictures = 8;
constexpr int thumbnailSide = 72;

} // namespace

CheckPage::CheckPage(TeachingDraft& draft, IModelTrial* trial, QString home)
    : m_draft(draft)
    , m_trial(trial)
    , m_home(std::move(home))
    , m_table(new QTableWidget(0, 2, this))
    , m_summary(new QLabel(this))
{
    auto* rows = new QVBoxLayout(this);
    for (int i = 0; i < 2; ++i) {
        m_boxes[i] = new QCheckBox(this);
        m_boxes[i]->setObjectName(QStringLiteral("station%1Box").arg(i + 1));
        m_boxes[i]->setMinimumHeight(fingerSize);
        rows->addWidget(m_boxes[i]);
        connect(m_boxes[i], &QCheckBox::toggled, this, &CheckPage::takeBoxes);
    }
    m_summary->setObjectName(QStringLiteral("summaryLabel"));
    m_summary->setWordWrap(true);
    rows->addWidget(m_summary);
    m_table->setObjectName(QStringLiteral("triesTable"));
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(thumbnailSide + 8);
    m_table->setColumnWidth(0, thumbnailSide + 24);
    m_table->setIconSize({thumbnailSide, thumbnailSide});
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setTabKeyNavigation(false);
    rows->addWidget(m_table, 1);
    connect(m_table, &QTableWidget::currentCellChanged, this, [this](int row) {
        if (row >= 0 && row < m_tries.size() && m_tries[row].answered)
            emit pictureChosen(m_tries[row].picture, m_tries[row].result);
    });
}

void CheckPage::setSolutions(const QStringList& solutions)
{
    m_solutions = solutions;
    for (int i = 0; i < 2; ++i) {
        m_boxes[i]->setEnabled(!solutions.value(i).isEmpty());
        m_boxes[i]->setVisible(solutions.size() > 1);
        m_boxes[i]->setChecked(!solutions.value(i).isEmpty());
    }
    takeBoxes();
}

void CheckPage::takeBoxes()
{
    m_draft.solutions.clear();
    for (int i = 0; i < 2; ++i) {
        if (m_boxes[i]->isChecked() && !m_draft.solutions.contains(m_solutions.value(i)))
            m_draft.solutions << m_solutions.value(i);
    }
    emit changed();
}

QString CheckPage::hint() const
{
    return tr("新参数在归档的最近图像上试运行：同型号的零件应找到，别的型号不应找到。选择工位，按“保存”。");
}

QString CheckPage::problem() const
{
    return m_draft.solutions.isEmpty() ? tr("请至少选择一个工位") : QString();
}

QString CheckPage::warning() const
{
    return m_trial ? QString() : tr("此引擎不能试运行未保存的参数；保存后请在任务设计器中复检");
}

void CheckPage::enter()
{
    ++m_round;
    m_tries.clear();
    m_table->setRowCount(0);
    retranslate();
    if (!m_trial)
        return;
    m_background.clear();
    m_background.run(
        [home = m_home, station = m_draft.station] { return ArchivePictures::latest(home, station, triedPictures); },
        [this, round = m_round](const QStringList& paths) { run(paths, round); });
}

void CheckPage::leave()
{
    ++m_round;
}

void CheckPage::run(const QStringList& paths, quint64 round)
{
    if (round != m_round)
        return;
    for (const QString& path : paths) {
        Try next;
        next.path = path;
        m_tries.append(next);
    }
    m_table->setRowCount(m_tries.size());
    m_read = 0;
    retranslate();
    readNext(round);
}

/// One picture after the other, so that not all of them wait in memory.
void CheckPage::readNext(quint64 round)
{
    if (round != m_round || m_read >= m_tries.size())
        return;
    const int row = m_read++;
    m_background.run(
        [path = m_tries[row].path] { return ImageFile::read(path).image; },
        [this, row, round](const QImage& picture) {
            if (round != m_round)
                return;
            m_tries[row].picture = picture;
            const auto done = [this, row, round, slot = m_mailbox.slot()](const IModelTrial::Outcome& outcome) {
                slot.post([this, row, round, result = TaskResult::fromMap(outcome.result)] {
                    if (round != m_round)
                        return;
                    m_tries[row].result = result;
                    m_tries[row].answered = true;
                    showTry(row);
                    readNext(round);
                });
            };
            m_trial->runTrial(picture, m_draft.solutions.value(0), m_draft.proposal.parameters, false, done);
        });
}

void CheckPage::showTry(int row)
{
    const Try& own = m_tries[row];
    auto* thumbnail = new QTableWidgetItem;
    const QImage drawn = own.result.image.isNull() ? own.picture : own.result.image;
    thumbnail->setIcon(QIcon(
        QPixmap::fromImage(drawn.scaled(thumbnailSide, thumbnailSide, Qt::KeepAspectRatio, Qt::SmoothTransformation))));
    m_table->setItem(row, 0, thumbnail);
    const QString file = QFileInfo(own.path).completeBaseName();
    const QString answer = own.result.found ? tr("角度 %1°\n得分 %2，次优 %3\n%4")
                                                  .arg(own.result.angle, 0, 'f', 2)
                                                  .arg(own.result.score, 0, 'f', 3)
                                                  .arg(own.result.runnerUpScore, 0, 'f', 3)
                                                  .arg(file)
                                            : tr("未找到：%1\n%2").arg(own.result.tip, file);
    auto* text = new QTableWidgetItem(answer);
    text->setToolTip(own.path + QLatin1Char('\n') + own.result.evidence);
    if (!own.result.found)
        text->setBackground(toneGround(Tone::Warning));
    m_table->setItem(row, 1, text);
    retranslate();
}

void CheckPage::retranslate()
{
    m_boxes[0]->setText(tr("保存到工位1（%1）").arg(m_solutions.value(0)));
    m_boxes[1]->setText(tr("保存到工位2（%1）").arg(m_solutions.value(1)));
    m_table->setHorizontalHeaderLabels({tr("图像"), tr("结果")});
    const int answered = int(std::count_if(m_tries.begin(), m_tries.end(), [](const Try& t) { return t.answered; }));
    const int found = int(std::count_if(m_tries.begin(), m_tries.end(), [](const Try& t) { return t.result.found; }));
    m_summary->setText(m_tries.isEmpty()
                           ? tr("工位%1的归档中没有图像可以检查").arg(m_draft.station)
                           : tr("最近 %1 幅图像：已试 %2 幅，找到 %3 幅").arg(m_tries.size()).arg(answered).arg(found));
}
