#pragma once

#include <QString>

#include <exception>

/// Calls into a module that may not keep its promise never to throw. Returns whether it came back as it should; what
/// it threw is told by a warning that names the module.
template <typename Call>
bool callModule(const QString& module, Call call)
{
    try {
        call();
        return true;
    } catch (const std::exception& thrown) {
        qWarning("module %s threw: %s", qUtf8Printable(module), thrown.what());
    } catch (...) {
        qWarning("module %s threw", qUtf8Printable(module));
    }
    return false;
}
