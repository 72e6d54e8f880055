#pragma once

#include <QByteArray>
#include <QString>

/// How a user arranged columns and sizes of the pages, in "user/results.ini" of the home. A home that cannot be written
/// keeps none, without a word.
namespace ViewState {

/// Empty when none was kept under that name. GUI thread.
QByteArray load(const QString& home, const QString& name);

/// Returns at once; the global thread pool writes.
void keep(const QString& home, const QString& name, const QByteArray& state);

} // namespace ViewState
