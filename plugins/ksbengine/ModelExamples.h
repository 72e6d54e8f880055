#pragma once

#include "SolutionStore.h"

#include <valvecell/IModelExamples.h>

#include <QCoreApplication>

/// What the models of the store have been shown. Examples are measured by what the finder itself sees at a place.
class ModelExamples : public IModelExamples
{
    Q_DECLARE_TR_FUNCTIONS(ModelExamples)

public:
    /// `store` outlives this object.
    explicit ModelExamples(SolutionStore* store);
    virtual ~ModelExamples() = default;

    QVariantMap makeExample(const QImage& image, const QVariantMap& parameters, const QPointF& point,
                            const QString& source, QString* error) override;
    Examples examples(const QString& solution, const QString& model) override;
    bool addExample(const QString& solution, const QString& model, Kind kind, const QVariantMap& example,
                    QString* error) override;
    bool removeExample(const QString& solution, const QString& model, Kind kind, int index, QString* error) override;
    bool copyExamples(const QString& solution, const QString& from, const QString& to, QString* error) override;
    QVariantMap proposeSizes(const QString& solution, const QString& model, QString* error) override;

private:
    SolutionStore* m_store;
};
