#pragma once

#include <valvecell/IModelProposer.h>

#include <QCoreApplication>

class IModelTeacher;

/// Proposes a model by what the built-in one sees, corrected by what a person points out; the teacher makes the
/// parameters, and they are tried on the image before they are handed out.
class ModelProposer : public IModelProposer
{
    Q_DECLARE_TR_FUNCTIONS(ModelProposer)

public:
    /// `teacher` outlives this object.
    explicit ModelProposer(IModelTeacher* teacher);
    virtual ~ModelProposer() = default;

    Proposal proposeModel(const QImage& image, const Hints& hints) override;

private:
    IModelTeacher* m_teacher;
};
