#pragma once

#include <QImage>
#include <QPointF>
#include <QString>
#include <QVariantMap>

#include <optional>

/// Optional interface of an engine: proposes a model from one good image without being shown anything, so that a person
/// only looks at it and corrects what is wrong. Nothing is stored; ISolutionStore::saveModel() takes what was proposed.
///
/// Threads: any, several calls at the same time included; the call computes for some hundred milliseconds and returns
/// with its answer, so a window calls it from a worker.
class IModelProposer
{
public:
    static constexpr const char* id = "valvecell.IModelProposer/1";

    /// What a person pointed out, image pixels with the middle of the top-left pixel being (0, 0). Each may be missing,
    /// and may be off by as much as a person's click is.
    struct Hints
    {
        std::optional<QPointF> center; ///< of the wheel
        std::optional<QPointF> hole;
    };

    /// What the engine sees. The radii are 0 where there is nothing, also when only a part was seen.
    struct Proposal
    {
        QVariantMap parameters; ///< a whole set, with the names of ISolutionStore and "taught" true; empty on failure
        QString error;          ///< then why, in the operator's language, with what to point out
        QPointF center;
        double rimRadius = 0;
        QPointF hole;
        double holeRadius = 0;
        double angle = 0; ///< degrees, as of a task
        double score = 0; ///< likewise
    };

    virtual Proposal proposeModel(const QImage& image, const Hints& hints) = 0;

protected:
    ~IModelProposer() = default;
};
