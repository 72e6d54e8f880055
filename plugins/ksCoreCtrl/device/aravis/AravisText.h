#pragma once

#include <QCoreApplication>

#include <glib.h>

/// The library's errors in the operator's language.
class AravisText
{
    Q_DECLARE_TR_FUNCTIONS(AravisText)

public:
    /// `what` could not be done, and why.
    static QString failed(const QString& what, const GError* error);
    static QString inUse();
    static bool isAccessDenied(const GError* error);
    /// Whether the camera did not answer at all.
    static bool isSilence(const GError* error);
};
