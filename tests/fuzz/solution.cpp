#include "Harness.h"
#include "SolutionStore.h"
#include "finder/Finder.h"

#include <QDir>

/// Solution and model are read from the same text.
FUZZ_TARGET(solution)
{
    static const bool made = QDir(fuzz::home()).mkpath(QStringLiteral("solutions/one"));
    fuzz::require(made, "the harness can make its folder");
    fuzz::homeFile("/solutions/one/solution.json", bytes);
    fuzz::homeFile("/solutions/one/one.model.json", bytes);
    SolutionStore store(fuzz::home() + QStringLiteral("/solutions"));
    store.read();
    for (const QString& solution : store.list()) {
        for (const QString& model : store.models(solution)) {
            finder::HoleModel stored;
            finder::HoleModel again;
            SolutionStore::Answer answer;
            QString error;
            fuzz::require(store.lookUp(solution, model, &stored, &answer), "what is listed is there");
            fuzz::require(finder::applyParameters(finder::parametersOf(stored), &again, &error),
                          "parameters that were read can be stored");
        }
    }
}
