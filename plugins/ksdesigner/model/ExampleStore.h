#pragma once

#include "ModelId.h"
#include "common/Background.h"

#include <valvecell/IModelExamples.h>

#include <QObject>

/// What the engine's models have been shown, where the engine keeps it. GUI thread.
class ExampleStore : public QObject
{
    Q_OBJECT

public:
    using Kind = IModelExamples::Kind;

    /// A place of an image that a person judged.
    struct Place
    {
        QString path;  ///< of the image; may be empty
        QImage image;  ///< null: read from the path
        QPointF point; ///< image pixels
    };

    /// `examples` may be null: then nothing is offered, and of every model nothing is known. It outlives this object.
    explicit ExampleStore(IModelExamples* examples, QObject* parent = nullptr);

    IModelExamples* offered() const { return m_examples; }
    IModelExamples::Examples of(const ModelId& id) const;
    /// The sizes that the model's holes suggest; empty, with the engine's reason, when they do not.
    QVariantMap proposal(const ModelId& id, QString* reason) const;

    /// Measures the place on a thread of its own and makes it an example; learned() or failed() follows. Calls are
    /// served one after another.
    void learn(const ModelId& id, Kind kind, const QVariantMap& parameters, const Place& place);

    /// False, with the engine's reason, when it refused; then nothing changed. Without an engine that keeps examples,
    /// nothing is to be done.
    bool add(const ModelId& id, Kind kind, const QVariantMap& example, QString* error);
    bool remove(const ModelId& id, Kind kind, int index, QString* error);
    bool copy(const ModelId& from, const QString& to, QString* error);

signals:
    /// A model has been shown more or less than before.
    void changed(const ModelId& id);
    void learned(const ModelId& id, ExampleStore::Kind kind, const QString& path);
    /// The reason, in the operator's language.
    void failed(const QString& message);

private:
    bool report(bool succeeded, const ModelId& id);

    IModelExamples* m_examples;
    Background m_background{Background::AtEnd::Wait};
};
