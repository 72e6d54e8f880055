#pragma once

#include <QPlainTextEdit>

/// A station's log lines, newest at the end; old ones fall off.
class LogPanel : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit LogPanel(QWidget* parent = nullptr);

    void append(const QString& line) { appendPlainText(line); }
};
