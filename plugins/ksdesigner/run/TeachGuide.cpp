#include "TeachGuide.h"

#include <valvecell/IModelExamples.h>
#include <valvecell/IModelTeacher.h>

TeachGuide::TeachGuide(IModelTeacher* teacher, IModelExamples* examples, QObject* parent)
    : QObject(parent)
    , m_teacher(teacher)
    , m_examples(examples)
{
}

void TeachGuide::begin(const QImage& image, const QString& name)
{
    if (!m_teacher || image.isNull())
        return;
    ++m_round;
    m_image = image;
    m_name = name;
    m_points.clear();
    go(Step::Rim);
}

void TeachGuide::cancel()
{
    if (m_step == Step::Idle)
        return;
    ++m_round;
    m_points.clear();
    go(Step::Idle);
}

void TeachGuide::pick(const QPointF& point)
{
    if (m_step != Step::Rim && m_step != Step::Hole)
        return;
    m_points.append(point);
    if (m_step == Step::Rim)
        go(Step::Hole);
    else
        propose();
}

void TeachGuide::propose()
{
    go(Step::Proposing);
    const auto work = [teacher = m_teacher, examples = m_examples, image = m_image, name = m_name, points = m_points] {
        Proposal proposal;
        proposal.parameters = teacher->propose(image, points.at(0), points.at(1), &proposal.error);
        if (examples && !proposal.parameters.isEmpty())
            proposal.example = examples->makeExample(image, proposal.parameters, points.at(1), name, &proposal.error);
        return proposal;
    };
    m_background.run(work, [this, round = m_round](const Proposal& proposal) {
        if (round == m_round)
            take(proposal);
    });
}

void TeachGuide::take(const Proposal& proposal)
{
    m_points.clear();
    go(Step::Idle);
    if (proposal.parameters.isEmpty())
        emit failed(proposal.error);
    else
        emit proposed(proposal.parameters, proposal.example);
}

void TeachGuide::go(Step step)
{
    m_step = step;
    emit stepChanged();
}
