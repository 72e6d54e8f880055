#pragma once

#include <valvecell/IEngine.h>
#include <valvecell/IModelExamples.h>
#include <valvecell/IModelProposer.h>
#include <valvecell/IModelTeacher.h>
#include <valvecell/IModelTrial.h>
#include <valvecell/ISolutionStore.h>
#include <valvecell/ResultKeys.h>

#include <QImage>
#include <QMap>
#include <QPointF>

#include <cstring>
#include <thread>
#include <vector>

/// An engine that a test drives: it keeps its tasks until the test answers them, and refuses what it is told to.
struct FakeEngine : IEngine, ITaskList, ISolutionStore, IModelTeacher, IModelProposer, IModelTrial, IModelExamples
{
    struct Task
    {
        QImage image;
        QString solution;
        QString model;          ///< empty for a trial
        QVariantMap parameters; ///< of a trial
        IModelTrial::Callback callback;
    };

    QMap<QString, QMap<QString, QVariantMap>> solutions;
    bool hasStore = true;
    bool hasTeacher = false;
    bool hasProposer = false;
    bool hasTrial = false;
    bool hasExamples = false;
    QString refusal;     ///< what every change answers while it is not empty
    QString unwritable;  ///< a solution that stores nothing
    QString undeletable; ///< a model that cannot be removed, or a solution that removes none
    std::vector<Task> tasks;
    Hints hinted;                  ///< of the last proposal
    QVariantMap proposal;          ///< what teaching answers; empty: it fails with `refusal`
    QMap<QString, Examples> shown; ///< by model; an example's source is the image's name and the place

    FakeEngine()
    {
        solutions[QStringLiteral("工位1")] = {{QStringLiteral("auto"), parameters(0, 0, 0, true)},
                                              {QStringLiteral("轮毂17寸"), parameters(812.5, 604, 14.25, true)},
                                              {QStringLiteral("轮毂19寸"), parameters(905, 688, 16, false)}};
        solutions[QStringLiteral("工位2")] = {{QStringLiteral("auto"), parameters(0, 0, 0, true)}};
    }

    static QVariantMap parameters(double rim, double ring, double hole, bool taught)
    {
        return {{"rim_radius", rim},      {"rim_radius_tol", 12.0}, {"ring_radius", ring},
                {"ring_radius_tol", 3.0}, {"hole_radius", hole},    {"hole_radius_tol", 25.0},
                {"score_limit", 0.5},     {"hole_depth", 0.0},      {"taught", taught}};
    }

    /// A result of a wheel whose hole was found at `center`.
    static QVariantMap found(const QImage& image, const QPointF& center, double angle = 123.456)
    {
        const QVariantMap answer{
            {ResultKeys::angle, angle},        {ResultKeys::error, 0},
            {ResultKeys::score, 0.912},        {ResultKeys::runnerUpScore, 0.31},
            {ResultKeys::image, image},        {ResultKeys::resultTip, QStringLiteral("已找到气门孔")},
            {ResultKeys::centerPoint, center}, {ResultKeys::hubCenter, QPointF(320, 240)},
            {ResultKeys::hubRadius, 200.0},    {ResultKeys::edgePoints, 64},
            {ResultKeys::residual, 0.21}};
        return {{ResultKeys::algoResult, answer}, {ResultKeys::taskTime, 5.5}, {ResultKeys::taskCali, true}};
    }

    static QVariantMap lost(int error, const QString& tip)
    {
        const QVariantMap answer{{ResultKeys::angle, 361.0}, {ResultKeys::error, error}, {ResultKeys::resultTip, tip}};
        return {{ResultKeys::algoResult, answer}, {ResultKeys::taskTime, 3.0}, {ResultKeys::taskCali, true}};
    }

    /// Answers the oldest task from a thread of the engine, and returns when the callback did.
    void answer(const QVariantMap& result, const QVector<TrialStage>& stages = {})
    {
        const Task task = tasks.front();
        tasks.erase(tasks.begin());
        std::thread([&] { task.callback({result, stages}); }).join();
    }

    void initialise() override {}
    ITaskList* taskList() override { return this; }
    void runTask(const QVariantMap& input, const QString& solution, const QString& model,
                 ResultCallback callback) override
    {
        tasks.push_back({input.value(ResultKeys::originImage).value<QImage>(),
                         solution,
                         model,
                         {},
                         [callback](const Outcome& outcome) { callback(outcome.result); }});
    }
    void runTrial(const QImage& image, const QString& solution, const QVariantMap& parameters, bool,
                  IModelTrial::Callback callback) override
    {
        tasks.push_back({image, solution, {}, parameters, std::move(callback)});
    }
    QVariantMap propose(const QImage&, const QPointF&, const QPointF&, QString* error) override
    {
        *error = refusal;
        return proposal;
    }
    Proposal proposeModel(const QImage&, const Hints& hints) override
    {
        hinted = hints;
        const QPointF hole = hints.hole.value_or(QPointF(320, 120));
        return {proposal, refusal, hints.center.value_or(QPointF(320, 240)), 200, hole, 14, 90, 0.9};
    }
    void* extension(const char* id) override
    {
        const auto asked = [id](const char* offered) { return std::strcmp(id, offered) == 0; };
        if (hasStore && asked(ISolutionStore::id))
            return static_cast<ISolutionStore*>(this);
        if (hasTeacher && asked(IModelTeacher::id))
            return static_cast<IModelTeacher*>(this);
        if (hasProposer && asked(IModelProposer::id))
            return static_cast<IModelProposer*>(this);
        if (hasTrial && asked(IModelTrial::id))
            return static_cast<IModelTrial*>(this);
        if (hasExamples && asked(IModelExamples::id))
            return static_cast<IModelExamples*>(this);
        return nullptr;
    }

    /// Whether a change is let through; if not, `error` says why.
    bool allows(QString* error) const
    {
        *error = refusal;
        return refusal.isEmpty();
    }
    QVector<Example>& listOf(const QString& model, Kind kind)
    {
        return kind == Kind::Hole ? shown[model].holes : shown[model].rejected;
    }
    QStringList sources(const QString& model, Kind kind)
    {
        QStringList names;
        for (const Example& example : listOf(model, kind))
            names.append(example.source);
        return names;
    }
    QVariantMap makeExample(const QImage& image, const QVariantMap&, const QPointF& point, const QString& source,
                            QString*) override
    {
        return {{"picture", image.scaled(64, 64)},
                {"source", QStringLiteral("%1 %2,%3").arg(source).arg(point.x()).arg(point.y())}};
    }
    Examples examples(const QString&, const QString& model) override { return shown.value(model); }
    bool addExample(const QString&, const QString& model, Kind kind, const QVariantMap& example,
                    QString* error) override
    {
        if (allows(error))
            listOf(model, kind).append({example["picture"].value<QImage>(), example["source"].toString()});
        return refusal.isEmpty();
    }
    bool removeExample(const QString&, const QString& model, Kind kind, int index, QString* error) override
    {
        if (allows(error))
            listOf(model, kind).remove(index);
        return refusal.isEmpty();
    }
    bool copyExamples(const QString&, const QString& from, const QString& to, QString* error) override
    {
        if (allows(error))
            shown[to] = shown.value(from);
        return refusal.isEmpty();
    }
    QVariantMap proposeSizes(const QString&, const QString&, QString* error) override
    {
        *error = QStringLiteral("至少需要 3 个孔示例");
        return {};
    }

    QStringList list() override { return solutions.keys(); }

    QStringList models(const QString& solution) override { return solutions.value(solution).keys(); }
    bool isBuiltIn(const QString& model) override { return model == QLatin1String("auto"); }
    QVariantMap parameters(const QString& solution, const QString& model) override
    {
        return solutions.value(solution).value(model);
    }
    bool saveModel(const QString& solution, const QString& model, const QVariantMap& parameters,
                   QString* error) override
    {
        *error = solution == unwritable ? solution + QStringLiteral(": no space left") : refusal;
        if (error->isEmpty())
            solutions[solution][model] = parameters;
        return error->isEmpty();
    }
    bool removeModel(const QString& solution, const QString& model, QString* error) override
    {
        if (model == undeletable || solution == undeletable) {
            *error = QStringLiteral("%1: Permission denied").arg(model);
            return false;
        }
        solutions[solution].remove(model);
        return true;
    }
    bool addSolution(const QString& solution, QString* error) override
    {
        if (allows(error))
            solutions[solution] = {};
        return refusal.isEmpty();
    }
};
