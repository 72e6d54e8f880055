#pragma once

#include <valvecell/IEngine.h>
#include <valvecell/ISolutionStore.h>

#include <QMap>

#include <cstring>

/// An engine of two solutions that keeps parameters in memory, and refuses what it is told to.
struct StoreEngine : IEngine, ITaskList, ISolutionStore
{
    QMap<QString, QMap<QString, QVariantMap>> solutions{{QStringLiteral("工位1"), {}}, {QStringLiteral("工位2"), {}}};
    QString unwritable;  ///< a solution that stores nothing
    QString unremovable; ///< a solution that removes nothing

    /// A model's rim radius in both solutions, "812.5|-": "-" where it has none.
    QString rims(const QString& model) const
    {
        QStringList texts;
        for (const auto& models : solutions)
            texts << (models.contains(model) ? models[model].value(QStringLiteral("rim_radius")).toString() : "-");
        return texts.join('|');
    }

    void initialise() override {}
    ITaskList* taskList() override { return this; }
    void runTask(const QVariantMap&, const QString&, const QString&, ResultCallback) override {}
    void* extension(const char* id) override
    {
        return std::strcmp(id, ISolutionStore::id) == 0 ? static_cast<ISolutionStore*>(this) : nullptr;
    }
    QStringList list() override { return solutions.keys(); }

    QStringList models(const QString& solution) override { return solutions.value(solution).keys() << "auto"; }
    bool isBuiltIn(const QString& model) override { return model == QLatin1String("auto"); }
    QVariantMap parameters(const QString& solution, const QString& model) override
    {
        return solutions.value(solution).value(model);
    }
    bool saveModel(const QString& solution, const QString& model, const QVariantMap& values, QString* error) override
    {
        const double rim = values.value(QStringLiteral("rim_radius")).toDouble();
        if (solution == unwritable || rim <= 0) {
            *error = QStringLiteral("rim_radius %1 refused").arg(rim);
            return false;
        }
        solutions[solution][model] = values;
        return true;
    }
    bool removeModel(const QString& solution, const QString& model, QString* error) override
    {
        *error = QStringLiteral("Permission denied");
        return solution != unremovable && solutions[solution].remove(model) > 0;
    }
    bool addSolution(const QString&, QString*) override { return false; }
};
