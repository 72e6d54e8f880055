#include "ExampleStore.h"

#include "common/ImageFile.h"

#include <QFileInfo>

namespace {

struct Measured
{
    QVariantMap example;
    QString error;
};

Measured measure(IModelExamples* examples, const QVariantMap& parameters, const ExampleStore::Place& place)
{
    Measured measured;
    QImage image = place.image;
    if (image.isNull()) {
        const ImageFile file = ImageFile::read(place.path);
        image = file.image;
        measured.error = file.problem();
    }
    if (!image.isNull())
        measured.example =
            examples->makeExample(image, parameters, place.point, QFileInfo(place.path).fileName(), &measured.error);
    return measured;
}

} // namespace

ExampleStore::ExampleStore(IModelExamples* examples, QObject* parent)
    : QObject(parent)
    , m_examples(examples)
{
}

IModelExamples::Examples ExampleStore::of(const ModelId& id) const
{
    return m_examples && !id.isNull() ? m_examples->examples(id.solution, id.model) : IModelExamples::Examples();
}

QVariantMap ExampleStore::proposal(const ModelId& id, QString* reason) const
{
    return m_examples ? m_examples->proposeSizes(id.solution, id.model, reason) : QVariantMap();
}

void ExampleStore::learn(const ModelId& id, Kind kind, const QVariantMap& parameters, const Place& place)
{
    if (!m_examples)
        return;
    const auto work = [examples = m_examples, parameters, place] { return measure(examples, parameters, place); };
    m_background.run(work, [this, id, kind, path = place.path](const Measured& measured) {
        QString error = measured.error;
        if (!measured.example.isEmpty() && add(id, kind, measured.example, &error))
            emit learned(id, kind, path);
        else
            emit failed(tr("未能加入示例：%1").arg(error));
    });
}

bool ExampleStore::report(bool succeeded, const ModelId& id)
{
    if (succeeded)
        emit changed(id);
    return succeeded;
}

bool ExampleStore::add(const ModelId& id, Kind kind, const QVariantMap& example, QString* error)
{
    return !m_examples || report(m_examples->addExample(id.solution, id.model, kind, example, error), id);
}

bool ExampleStore::remove(const ModelId& id, Kind kind, int index, QString* error)
{
    return !m_examples || report(m_examples->removeExample(id.solution, id.model, kind, index, error), id);
}

bool ExampleStore::copy(const ModelId& from, const QString& to, QString* error)
{
    const IModelExamples::Examples known = of(from);
    if (known.holes.isEmpty() && known.rejected.isEmpty())
        return true;
    return report(m_examples->copyExamples(from.solution, from.model, to, error), {from.solution, to});
}
