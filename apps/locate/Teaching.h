#pragma once

#include "ModelExamples.h"
#include "SolutionStore.h"

#include <QJsonObject>

#include <optional>

class QCommandLineParser;

/// One example for a model, as a script gives it.
struct TeachOrder
{
    QString image;              ///< path
    QPointF hole;               ///< image pixels
    std::optional<QPointF> rim; ///< a point on the rim's outer edge, for a model that does not exist yet
    QString solution;
    QString model;
    IModelExamples::Kind kind = IModelExamples::Kind::Hole;
};

/// Adds examples to the models of a store.
class Teaching
{
public:
    /// `store` outlives this object.
    explicit Teaching(SolutionStore* store);

    /// Adds the example and returns what leaves the program for it: the image's and the model's name, whether the model
    /// was made, how many examples it has, the sizes of this one and "proposed", the model's parameters as its holes
    /// suggest them, null for fewer holes than that needs. A solution or model that does not exist is made by its first
    /// hole; a counter-example needs the model. Empty, with the reason, when nothing was added.
    QJsonObject add(const TeachOrder& order, QString* error);

    /// The parameters that the model's holes suggest; empty, with the reason, for too few holes or an unknown model.
    QJsonObject proposal(const QString& solution, const QString& model, QString* error);

    /// Measures from images of one wheel in different places how deep its hole lies behind the rim's edge, stores it as
    /// the model's hole_depth and returns it with its standard deviation, millimetres. Empty, with the reason and
    /// nothing stored, when an image shows no hole, the solution does not know the camera's distance, or the places are
    /// too close to each other.
    QJsonObject depth(const QString& solution, const QString& model, const QStringList& images, QString* error);

private:
    /// The parameters that the example is measured with: the model's, or those that its first image teaches.
    QVariantMap parametersFor(const TeachOrder& order, const QImage& image, QString* error);
    bool create(const TeachOrder& order, const QVariantMap& parameters, QString* error);
    QJsonObject storeDepth(const QString& solution, const QString& model, const finder::DepthEstimate& estimate,
                           int images, QString* error);

    SolutionStore* m_store;
    ModelExamples m_examples;
};

/// The solutions below the home.
SolutionStore readSolutions();
/// The solution that is named, else the only one; of an empty home the name of one to be made. Empty when several could
/// be meant.
QString solutionOf(const QCommandLineParser& parser, SolutionStore& store);

/// The options that change or read a model's examples instead of locating.
namespace TeachCommand {

void addOptions(QCommandLineParser& parser);
/// Whether one of them was given.
bool isAsked(const QCommandLineParser& parser);
/// What is wrong with the command line; empty when nothing is.
QString misuse(const QCommandLineParser& parser, SolutionStore& store);
/// Does what was asked for, and returns the line to print; empty, with the reason, when it could not be done.
QJsonObject run(const QCommandLineParser& parser, SolutionStore& store, QString* error);

} // namespace TeachCommand
