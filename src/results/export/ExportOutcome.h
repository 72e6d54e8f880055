#pragma once

#include <QString>

/// How an export ended. Neither an error nor a cancelled one leaves anything behind, or touches an older file.
struct ExportOutcome
{
    QString path;  ///< of what was written; empty when nothing was
    QString error; ///< file and reason, a sentence for the user; empty also when it was cancelled
    int written = 0;
    int missing = 0; ///< pictures that are not there any more

    bool isGood() const { return !path.isEmpty(); }
    static ExportOutcome failed(const QString& error) { return {{}, error, 0, 0}; }
};
