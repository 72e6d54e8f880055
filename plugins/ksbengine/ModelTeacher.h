#pragma once

#include <valvecell/IModelTeacher.h>

/// Proposes a model from one image, by what the finder itself sees near the two points, and tries the proposal on that
/// image before it hands it out.
class ModelTeacher : public IModelTeacher
{
public:
    virtual ~ModelTeacher() = default;

    QVariantMap propose(const QImage& image, const QPointF& rim, const QPointF& hole, QString* error) override;
};
