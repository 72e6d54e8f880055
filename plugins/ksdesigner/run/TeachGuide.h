#pragma once

#include "common/Background.h"

#include <QImage>
#include <QPointF>
#include <QVariantMap>
#include <QVector>

class IModelExamples;
class IModelTeacher;

/// Leads through the teaching of a model: first a point on the rim, then the hole, then the engine's proposal.
class TeachGuide : public QObject
{
    Q_OBJECT

public:
    enum class Step { Idle, Rim, Hole, Proposing };

    /// Either may be null; they outlive the guide.
    TeachGuide(IModelTeacher* teacher, IModelExamples* examples, QObject* parent = nullptr);

    bool isOffered() const { return m_teacher; }
    Step step() const { return m_step; }
    /// Points picked so far, in image pixels.
    const QVector<QPointF>& points() const { return m_points; }

    /// Starts over with the rim. Does nothing without teacher or image. `name` is the image's, for people.
    void begin(const QImage& image, const QString& name);
    /// Forgets the points; a proposal on its way is dropped.
    void cancel();
    /// Takes the point that the present step asks for; ignored in other steps.
    void pick(const QPointF& point);

signals:
    void stepChanged();
    /// A whole set of parameters, and the hole as an example of IModelExamples, empty where the engine keeps none;
    /// nothing was stored.
    void proposed(const QVariantMap& parameters, const QVariantMap& example);
    /// The engine saw no wheel or no hole at the points; its words.
    void failed(const QString& reason);

private:
    struct Proposal
    {
        QVariantMap parameters;
        QVariantMap example;
        QString error;
    };

    void propose();
    void take(const Proposal& proposal);
    void go(Step step);

    IModelTeacher* m_teacher;
    IModelExamples* m_examples;
    Background m_background{Background::AtEnd::Wait};
    Step m_step = Step::Idle;
    QImage m_image;
    QString m_name;
    QVector<QPointF> m_points;
    quint64 m_round = 0; ///< proposals of cancelled rounds are dropped
};
