#include "dialogs/models/ModelFile.h"

#include "Harness.h"

FUZZ_TARGET(modelfile)
{
    ModelFile file;
    QString error;
    const bool good = ModelFile::read(fuzz::homeFile("/x.vcmodel", bytes), &file, &error);
    fuzz::require(good == error.isEmpty(), "a file that is refused has its reason");
    if (!good || !fuzz::isChosen(bytes))
        return;
    const QString path = fuzz::home() + QStringLiteral("/again.vcmodel");
    ModelFile again;
    fuzz::require(file.write(path, &error) && ModelFile::read(path, &again, &error), "a model can be carried on");
    fuzz::require(again.entry.name == file.entry.name && again.parameters == file.parameters, "and is the same then");
}
