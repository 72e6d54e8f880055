#pragma once

#include <QImage>
#include <QPointF>
#include <QString>
#include <QVariantMap>
#include <QVector>

/// Optional interface of an engine: what a model has been shown. Small pictures of its hole, and of what was wrongly
/// taken for it, belong to the model and go with it when it is removed. They never change its parameters by themselves.
class IModelExamples
{
public:
    static constexpr const char* id = "valvecell.IModelExamples/1";

    /// Entry of IModelTrial's parameters: the name of the model whose examples speak in the trial; without it none do.
    static constexpr const char* examplesOf = "examples_of";

    enum class Kind {
        Hole,    ///< this is the hole
        Rejected ///< this is not the hole
    };

    struct Example
    {
        QImage picture; ///< away from the hub is to the right
        QString source; ///< file name of the image, for people; may be empty
    };

    struct Examples
    {
        QVector<Example> holes;    ///< oldest first
        QVector<Example> rejected; ///< likewise
        QString trouble; ///< what of the stored examples cannot be read, in the operator's language; usually empty
    };

    /// Measures the place at `point`, in image pixels with the middle of the top-left pixel being (0, 0), and returns
    /// it as an example that nothing has stored yet, for addExample(). `parameters` are the model's, of ISolutionStore;
    /// `point` may be off by as much as a person's click is. Where no hole can be measured, the point itself is taken,
    /// with the model's size of the hole. Without a wheel, or without that size, the map is empty and `error` says why,
    /// in the operator's language. Any image is allowed.
    ///
    /// Any thread, several calls at the same time included; it computes for some tens of milliseconds.
    virtual QVariantMap makeExample(const QImage& image, const QVariantMap& parameters, const QPointF& point,
                                    const QString& source, QString* error) = 0;

    /// All of a model; empty for an unknown one. This and all below: GUI thread.
    virtual Examples examples(const QString& solution, const QString& model) = 0;

    /// Stores an example with a model; the next task counts it. It overrules the same place of the other kind. The
    /// engine keeps a limited number, and of these the ones that differ the most, so that it may drop an old one or the
    /// new one. On failure, also for a built-in or unknown model, nothing changes, false is returned and `error` says
    /// why; likewise below.
    virtual bool addExample(const QString& solution, const QString& model, Kind kind, const QVariantMap& example,
                            QString* error) = 0;

    /// Forgets one example, by its index in examples().
    virtual bool removeExample(const QString& solution, const QString& model, Kind kind, int index, QString* error) = 0;

    /// Gives a model all examples of another one of the same solution in place of its own.
    virtual bool copyExamples(const QString& solution, const QString& from, const QString& to, QString* error) = 0;

    /// The model's parameters with sizes and tolerances as its holes suggest them; nothing is stored. Empty, with the
    /// reason in `error`, as long as it has been shown too few holes.
    virtual QVariantMap proposeSizes(const QString& solution, const QString& model, QString* error) = 0;

protected:
    ~IModelExamples() = default;
};
