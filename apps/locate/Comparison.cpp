#include "Comparison.h"

#include <QFileInfo>

#include <cmath>

Comparison Comparison::of(const finder::FindResult& present, const finder::FindResult& edited)
{
    Comparison comparison;
    if (present.found() != edited.found()) {
        comparison.change = present.found() ? Change::Lost : Change::Gained;
    } else if (present.found()) {
        comparison.moved = cv::norm(edited.hole - present.hole);
        comparison.turned = std::abs(std::remainder(edited.angle - present.angle, 360.0));
        const bool moved = comparison.moved > movedLimit || comparison.turned > turnedLimit;
        comparison.change = moved ? Change::Moved : Change::Same;
    }
    return comparison;
}

QString Comparison::name() const
{
    switch (change) {
    case Change::Same:
        return QStringLiteral("same");
    case Change::Moved:
        return QStringLiteral("moved");
    case Change::Gained:
        return QStringLiteral("gained");
    case Change::Lost:
        return QStringLiteral("lost");
    case Change::BothMissed:
        break;
    }
    return QStringLiteral("missed");
}

void ComparisonSummary::add(const Located& located)
{
    const Comparison comparison = Comparison::of(located.present.result, located.edited.result);
    ++m_images;
    m_foundPresent += located.present.result.found();
    m_foundEdited += located.edited.result.found();
    m_gained += comparison.change == Comparison::Change::Gained;
    m_lost += comparison.change == Comparison::Change::Lost;
    m_moved += comparison.change == Comparison::Change::Moved;
    m_largestMove = std::max(m_largestMove, comparison.moved);
    m_slowestPresent = std::max(m_slowestPresent, located.present.milliseconds);
    if (located.edited.milliseconds >= m_slowestEdited) {
        m_slowestEdited = located.edited.milliseconds;
        m_slowestImage = QFileInfo(located.file).fileName();
    }
}

QString ComparisonSummary::text() const
{
    return QStringLiteral("%1 images, found %2 -> %3, gained %4, lost %5, moved %6 (at most %7 px), "
                          "slowest %8 -> %9 ms (%10)")
        .arg(m_images)
        .arg(m_foundPresent)
        .arg(m_foundEdited)
        .arg(m_gained)
        .arg(m_lost)
        .arg(m_moved)
        .arg(m_largestMove, 0, 'f', 2)
        .arg(m_slowestPresent, 0, 'f', 1)
        .arg(m_slowestEdited, 0, 'f', 1)
        .arg(m_slowestImage);
}
