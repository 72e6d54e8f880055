#pragma once

#include <valvecell/IModelProposer.h>

#include <QImage>
#include <QStringList>

/// A model while it is taught. GUI thread.
struct TeachingDraft
{
    QString name;
    int index = 0;   ///< PLC index
    int station = 1; ///< whose camera and archive are used
    QImage picture;
    QString source; ///< of the picture, for people

    IModelProposer::Hints hints;
    IModelProposer::Proposal proposal;
    QVariantMap example; ///< of IModelExamples; empty where the engine keeps none
    bool proposing = false;

    QStringList solutions; ///< of the stations that get the model

    bool isProposed() const { return !proposing && !proposal.parameters.isEmpty(); }
};
