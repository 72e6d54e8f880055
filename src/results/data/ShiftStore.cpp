#include "results/data/ShiftStore.h"

#include "config/ShiftConfig.h"

Shifts ShiftStore::load(const QString& home)
{
    ShiftConfig config;
    config.load(home);
    return Shifts::fromText(config.begins);
}
