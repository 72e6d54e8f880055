#pragma once

#include <QtGlobal>

class IEngine;
class QWidget;

/// The task designer. Module file "ksdesigner", symbols "Lib_Designer_Init" and "Lib_Designer_Free".
///
/// GUI thread throughout. The instance that the initialise function returns belongs to the caller, who deletes it
/// before the engine.
class IDesigner
{
public:
    /// Hands over the engine whose solutions are designed; it outlives the designer. Called once, before
    /// openDesigner().
    virtual void attachEngine(IEngine* engine) = 0;

    /// Shows the designer's window, or brings it to the front; returns at once. `parent` may be null.
    virtual void openDesigner(QWidget* parent) = 0;

    virtual ~IDesigner() = default;

    /// An optional interface of this module by its id, or null; see Extension.h.
    virtual void* extension(const char* id)
    {
        Q_UNUSED(id)
        return nullptr;
    }
};

/// The signature of "Lib_Designer_Init"; the argument is reserved and null.
using DesignerInitFunction = IDesigner* (*)(void* reserved);
