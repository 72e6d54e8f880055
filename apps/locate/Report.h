#pragma once

#include "Locate.h"

#include <QByteArray>

/// What became of one image when the parameters were edited.
struct Comparison
{
    enum class Change { Same, Moved, Gained, Lost, BothMissed };

    /// Well above what the same hole differs by from one set of parameters to the next.
    static constexpr double movedLimit = 0.5;   ///< pixels
    static constexpr double turnedLimit = 0.05; ///< degrees

    Change change = Change::BothMissed;
    double moved = 0;  ///< pixels; 0 unless both found a hole
    double turned = 0; ///< degrees, never negative; 0 unless both found a hole

    static Comparison of(const finder::FindResult& present, const finder::FindResult& edited);
    /// "same", "moved", "gained", "lost" or "missed".
    QString name() const;
};

/// The figures of a whole run with two sets of parameters.
class ComparisonSummary
{
public:
    void add(const Located& located);
    /// One line.
    QString text() const;

private:
    int m_images = 0;
    int m_foundPresent = 0;
    int m_foundEdited = 0;
    int m_gained = 0;
    int m_lost = 0;
    int m_moved = 0;
    double m_largestMove = 0;
    double m_slowestPresent = 0;
    double m_slowestEdited = 0;
    QString m_slowestImage;
};

/// What leaves the program for one image.
namespace Report {

/// One JSON object; of a comparison with the second run under "edited", and what changed.
QJsonObject lineOf(const Located& located);

/// The same as a table of comma-separated text for spreadsheets: UTF-8 with a byte order mark, lines end with CR LF.
QByteArray csvHeader(bool compared);
/// Numbers with a point, and empty where there is no value.
QByteArray csvLine(const Located& located);

} // namespace Report
