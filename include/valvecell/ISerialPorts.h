#pragma once

#include <QString>
#include <QVector>

#include <functional>

/// A port that a line could have.
struct FoundPort
{
    QString name;        ///< for the setting: one that stays with the converter, where the system has such names
    QString device;      ///< behind the name now
    QString description; ///< what it says it is, manufacturer and serial number included; may be empty
};

/// Optional interface of a serial-port module: which ports there are, and which names a line may have. Any thread.
class ISerialPorts
{
public:
    static constexpr const char* id = "valvecell.ISerialPorts/1";

    /// Looks for the ports, in a steady order; other names may do as well. It may take a while, and may be run on any
    /// thread, also after the module's object is gone.
    virtual std::function<QVector<FoundPort>()> finder() const = 0;

    /// Why no line can have that name, with the remedy, in the operator's language; empty for one that can, whether or
    /// not it is there. Returns at once.
    virtual QString problemOf(const QString& name) const = 0;

protected:
    ~ISerialPorts() = default;
};
