#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class CellProcess;
class NetworkCameras;

/// Something that goes wrong in a plant for a while, without the program or its line ending.
class Fault
{
public:
    virtual ~Fault() = default;
    virtual QString name() const = 0;
    /// False when it could not be brought about.
    virtual bool begin() = 0;
    virtual void end() = 0;

    /// While it lasts, pictures can be lost.
    virtual bool losesPictures() const { return false; }
    /// A station's camera may go without delivering.
    virtual bool losesImages() const { return false; }
};

namespace Faults {

/// What they are done to; all outlive the faults.
struct Ground
{
    QString home;
    CellProcess& program;
    NetworkCameras* cameras; ///< null: the program reads the images itself
};

/// Those of --faults: "kill" and "cut", which end the program and its line, are the session's own.
QStringList names();

/// Null for a name that is none of them.
std::unique_ptr<Fault> make(const QString& name, const Ground& ground);

} // namespace Faults
