#pragma once

#include <QString>
#include <QVector>

/// Something that the program stands on, or a part of itself.
struct ProgramPart
{
    QString name;
    QString version; ///< as it runs now; empty when only its own author knows
    QString purpose;
    QString licence;
    QString source; ///< where text of licence and source code are found
};

/// The program first, then the libraries that it uses; purposes in the program's language. GUI thread.
QVector<ProgramPart> programParts();
