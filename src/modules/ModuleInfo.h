#pragma once

#include <QString>

/// What there is to tell about a module of the program.
struct ModuleInfo
{
    QString name;         ///< the name by which it is loaded
    bool working = false; ///< its object was made
    QString file;         ///< of its library; as it was asked for when it could not be loaded
    QString version;      ///< empty when the module does not tell
    QString problem;      ///< why it does not work; empty when it does
};
