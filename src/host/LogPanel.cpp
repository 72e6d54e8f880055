#include "host/LogPanel.h"

LogPanel::LogPanel(QWidget* parent)
    : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setMaximumBlockCount(2000);
    setLineWrapMode(QPlainTextEdit::NoWrap);
}
