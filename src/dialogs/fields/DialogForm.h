#pragma once

class QDialog;

namespace DialogForm {

/// What all dialogs have in common: fields and buttons as high as a finger needs, no button for context help.
void prepare(QDialog* dialog);

} // namespace DialogForm
