#pragma once

#include <QString>

/// How the forwarding stands, for the screen.
struct ForwardStatus
{
    bool on = false;
    bool connected = false;
    qint64 waiting = 0; ///< rows that the broker has not acknowledged
    QString trouble;    ///< a sentence for the user; empty when there is none
    bool wantsEngineer = false;
};
