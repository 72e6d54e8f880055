#pragma once

#include <QImage>
#include <QPointF>
#include <QString>
#include <QVariantMap>

/// Optional interface of an engine: proposes a model's parameters from one good image on which a person pointed out the
/// wheel and its hole. Nothing is stored; ISolutionStore::saveModel() takes what was proposed, edited or not.
///
/// Threads: any, several calls at the same time included; the call computes for some tens of milliseconds and returns
/// with its answer, so a window calls it from a worker.
class IModelTeacher
{
public:
    static constexpr const char* id = "valvecell.IModelTeacher/1";

    /// `rim` is any point near the outer edge of the rim, `hole` a point inside the valve hole, in image pixels with
    /// the middle of the top-left pixel being (0, 0). Both may be off by as much as a person's click is.
    ///
    /// Returns a whole set of parameters, with the names of ISolutionStore and "taught" true. When there is no wheel or
    /// no hole at these points the map is empty and `error` says why, in the operator's language. Any image is allowed.
    virtual QVariantMap propose(const QImage& image, const QPointF& rim, const QPointF& hole, QString* error) = 0;

protected:
    ~IModelTeacher() = default;
};
