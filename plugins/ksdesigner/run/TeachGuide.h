#pragma once

#include "run/Background.h"

#include <QImage>
#include <QPointF>
#include <QVariantMap>
#include <QVector>

class IModelTeacher;

/// Leads through the teaching of a model: first a point on the rim, then the hole, then the engine's proposal.
class TeachGuide : public QObject
{
    Q_OBJECT

public:
    enum class Step { Idle, Rim, Hole, Proposing };

    /// `teacher` may be null; it outlives the guide.
    explicit TeachGuide(IModelTeacher* teacher, QObject* parent = nullptr);

    bool isOffered() const { return m_teacher; }
    Step step() const { return m_step; }
    /// Points picked so far, in image pixels.
    const QVector<QPointF>& points() const { return m_points; }

    /// Starts over with the rim. Does nothing without teacher or image.
    void begin(const QImage& image);
    /// Forgets the points; a proposal on its way is dropped.
    void cancel();
    /// Takes the point that the present step asks for; ignored in other steps.
    void pick(const QPointF& point);

signals:
    void stepChanged();
    /// A whole set of parameters; nothing was stored.
    void proposed(const QVariantMap& parameters);
    /// The engine saw no wheel or no hole at the points; its words.
    void failed(const QString& reason);

private:
    struct Proposal
    {
        QVariantMap parameters;
        QString error;
    };

    void propose();
    void take(const Proposal& proposal);
    void go(Step step);

    IModelTeacher* m_teacher;
    Background m_background;
    Step m_step = Step::Idle;
    QImage m_image;
    QVector<QPointF> m_points;
    quint64 m_round = 0; ///< proposals of cancelled rounds are dropped
};
