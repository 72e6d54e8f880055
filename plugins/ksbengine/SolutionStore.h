#pragma once

#include "finder/HoleExamples.h"
#include "finder/HoleModel.h"

#include <valvecell/IEngine.h>
#include <valvecell/ISolutionStore.h>

#include <QCoreApplication>
#include <QMap>
#include <QString>

/// The solutions of the home and their models, in memory and on disk:
/// user/solutions/<solution>/solution.json and <model>.model.json, beside it <model>.examples.json with what the model
/// has been shown; file names made by fileName(). GUI thread.
class SolutionStore : public ITaskList, public ISolutionStore
{
    Q_DECLARE_TR_FUNCTIONS(SolutionStore)

public:
    /// Where a solution's answer points: the hole's centre or the hub's.
    enum class Answer { Hole, Hub };

    /// `folder` holds one folder for each solution; it need not exist yet.
    explicit SolutionStore(const QString& folder);
    virtual ~SolutionStore() = default;

    /// Reads everything anew. A damaged solution file leaves the solution with its models, see trouble(); a damaged
    /// model is left out, of damaged examples those that can be read stay; each writes a warning with file and place.
    void read();

    QStringList list() override;

    QStringList models(const QString& solution) override;
    bool isBuiltIn(const QString& model) override;
    QVariantMap parameters(const QString& solution, const QString& model) override;
    bool saveModel(const QString& solution, const QString& model, const QVariantMap& parameters,
                   QString* error) override;
    bool removeModel(const QString& solution, const QString& model, QString* error) override;
    bool addSolution(const QString& solution, QString* error) override;

    /// Copies what a task needs, the camera of the solution's station with the model; false when solution or model is
    /// unknown.
    bool lookUp(const QString& solution, const QString& model, finder::HoleModel* parameters, Answer* answer) const;

    /// Why no task of the solution may be answered, for the operator: its file is damaged, or says no known point, so
    /// that nobody knows which point is meant. Empty when all is well, and for an unknown solution.
    QString trouble(const QString& solution) const;

    /// What a model has been shown; null for nothing and for an unknown one.
    std::shared_ptr<const finder::HoleExamples> examples(const QString& solution, const QString& model) const;
    /// What of the stored examples could not be read, with file and place; empty when all could.
    QString exampleTrouble(const QString& solution, const QString& model) const;
    /// Stores them in place of the former ones; a file that could not be read whole is kept aside. False, and nothing
    /// changed, for an unknown or built-in model or when the file cannot be written.
    bool setExamples(const QString& solution, const QString& model, const finder::HoleExamples& examples,
                     QString* error);

    /// A name as a file name: letters and digits of any script, space, '-', '_' and inner '.' stay, all else becomes
    /// %XX of its UTF-8 bytes.
    static QString fileName(const QString& name);

private:
    struct Solution
    {
        QString folder;
        QString trouble;
        Answer answer = Answer::Hole;
        finder::Camera camera;
        QMap<QString, finder::HoleModel> models;
        QMap<QString, QString> files;
        QMap<QString, QString> exampleTroubles;
    };

    static bool isValidName(const QString& name, QString* error);
    void readSolution(const QString& folder);
    static finder::Camera readCamera(const QJsonObject& camera, const QString& file);
    void readModel(const QString& file, Solution* solution);
    static void readExamples(const QString& model, Solution* solution);
    QString modelFile(const Solution& solution, const QString& model) const;

    QString m_folder;
    QMap<QString, Solution> m_solutions;
};
