#pragma once

class QAbstractButton;
class QDialog;
class QKeySequence;
class QWidget;

namespace DialogForm {

/// What all dialogs have in common: fields and buttons as high as a finger needs, no button for context help.
void prepare(QDialog* dialog);
/// The same heights for fields that come later.
void prepareFields(QWidget* form);

/// The keys click the button; it needs none of them in its text.
void addShortcut(QDialog* dialog, const QKeySequence& keys, QAbstractButton* button);

/// Takes a window and its dialogs off the screen. The first line of the destructor of every window that listens to
/// fields: a field that loses the focus tells what was typed, and ~QDialog() hides the window, too, but only when its
/// members are gone already.
void takeDown(QWidget* window);

} // namespace DialogForm
