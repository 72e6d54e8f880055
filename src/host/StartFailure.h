#pragma once

#include <QString>

#include <memory>

class Cell;

/// A start-up that cannot go on. GUI thread.
namespace StartFailure {

/// Says in a box and in the log why the modules do not run: `text`, the program's sentence, and what is wrong with
/// which file. Ends the process then, after taking the cell down; for a host that wants failures returned there is
/// neither box nor end, and the reason is returned.
QString report(const QString& text, std::unique_ptr<Cell>& cell);

} // namespace StartFailure
