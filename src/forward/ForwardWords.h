#pragma once

#include <QCoreApplication>

/// What forwarding says to the user.
struct ForwardWords
{
    Q_DECLARE_TR_FUNCTIONS(ForwardWords)
};
