#pragma once

#include "forward/ForwardStatus.h"

#include <QString>

#include <memory>

class Cell;
class ksGlobalConfig;

/// Hands the cell's state to the forwarding of its records, which reads those by itself, and keeps the alarm of it. GUI
/// thread; nothing waits but the end.
class CellForwarding
{
public:
    virtual ~CellForwarding() = default;

    /// To be called about once a second.
    virtual void tick() = 0;
    /// Settings hold new values.
    virtual void applySettings() = 0;
    virtual ForwardStatus status() const = 0;

    /// Whether the program was built with it.
    static bool isBuilt();
    /// What keeps a text from being a group's or a cell's name; a sentence for the user, empty when nothing does.
    static QString whyNoName(const QString& name);
    /// Null where the program was built without it. All outlive it.
    static std::unique_ptr<CellForwarding> make(const QString& home, Cell& cell, const ksGlobalConfig& config);
};
