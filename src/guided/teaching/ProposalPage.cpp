#include "common/FingerSize.h"
#include "guided/teaching/TeachingPages.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

ProposalPage::ProposalPage(TeachingDraft& draft)
    : m_draft(draft)
    , m_center(new QRadioButton(this))
    , m_hole(new QRadioButton(this))
    , m_again(new QPushButton(this))
    , m_facts(new QLabel(this))
{
    m_center->setObjectName(QStringLiteral("centerChoice"));
    m_hole->setObjectName(QStringLiteral("holeChoice"));
    m_again->setObjectName(QStringLiteral("againButton"));
    m_facts->setObjectName(QStringLiteral("factsLabel"));
    m_again->setAutoDefault(false);
    m_facts->setWordWrap(true);
    m_center->setMinimumHeight(fingerSize);
    m_hole->setMinimumHeight(fingerSize);
    auto* rows = new QVBoxLayout(this);
    for (QWidget* widget : std::initializer_list<QWidget*>{m_facts, m_center, m_hole, m_again})
        rows->addWidget(widget);
    rows->addStretch(1);
    m_center->setChecked(true);
    connect(m_again, &QPushButton::clicked, this, [this] {
        m_draft.hints = {};
        m_center->setChecked(true);
        emit proposalWanted();
    });
}

QString ProposalPage::hint() const
{
    return tr("圆圈应落在轮缘和气门孔上。若不对，先点击轮毂中心，再点击气门孔中心，引擎立即重新测量。");
}

QString ProposalPage::problem() const
{
    if (m_draft.proposing)
        return tr("引擎正在测量…");
    return m_draft.proposal.parameters.isEmpty() ? m_draft.proposal.error : QString();
}

void ProposalPage::enter()
{
    showProposal();
}

void ProposalPage::point(const QPointF& pixel)
{
    if (m_draft.proposing)
        return;
    if (m_center->isChecked())
        m_draft.hints.center = pixel;
    else
        m_draft.hints.hole = pixel;
    m_hole->setChecked(true);
    emit proposalWanted();
}

void ProposalPage::showProposal()
{
    retranslate();
    emit changed();
}

void ProposalPage::retranslate()
{
    m_center->setText(tr("点击的是轮毂中心(&W)"));
    m_hole->setText(tr("点击的是气门孔中心(&H)"));
    m_again->setText(tr("忘记点击，重新建议(&R)"));
    const IModelProposer::Proposal& seen = m_draft.proposal;
    if (m_draft.proposing)
        return m_facts->setText(tr("引擎正在测量…"));
    if (!m_draft.isProposed())
        return m_facts->setText(seen.error);
    m_facts->setText(tr("角度 %1°，得分 %2\n轮缘半径 %3 像素\n孔心到中心 %4 像素\n孔半径 %5 像素")
                         .arg(seen.angle, 0, 'f', 2)
                         .arg(seen.score, 0, 'f', 3)
                         .arg(seen.parameters.value(QStringLiteral("rim_radius")).toDouble(), 0, 'f', 1)
                         .arg(seen.parameters.value(QStringLiteral("ring_radius")).toDouble(), 0, 'f', 1)
                         .arg(seen.parameters.value(QStringLiteral("hole_radius")).toDouble(), 0, 'f', 1));
}
