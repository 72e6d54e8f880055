#pragma once

#include "sets/DemoHome.h"
#include "sets/WheelSet.h"

/// What the command line asks for.
struct Options
{
    enum Task { Help, Set, Demo };
    Task task = Help;
    QString out; ///< folder of the set
    WheelSetPlan set;
    DemoPlan demo;
};

/// The text of --help.
QString usage();

/// Reads the arguments, the program's name not among them. Returns false with a sentence that names the option when
/// they make no sense.
bool parseOptions(const QStringList& arguments, Options* options, QString* error);
