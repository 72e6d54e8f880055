#pragma once

#include <QByteArray>

/// The public key (PEM) that the licences of this build are checked with. It is a part of the program: no file, setting
/// or variable can put another in its place.
QByteArray builtInLicenceKey();
