#pragma once

#include "common/LookColors.h"

#include <QWidget>

#include <memory>

struct TaskResult;

namespace Ui {
class ResultTable;
}

/// The numbers of one answer of the engine, with a coloured verdict on top.
class ResultTable : public QWidget
{
    Q_OBJECT

public:
    explicit ResultTable(QWidget* parent = nullptr);
    ~ResultTable() override;

    /// No image, or another model: nothing is known.
    void clear();
    /// The engine is at work.
    void setBusy();
    /// Numbers that the engine did not give are shown as a dash, never as 0.
    void setResult(const TaskResult& result);

private:
    void setVerdict(const QString& text, const LookColors::Sign& sign);
    void setNumbers(const TaskResult& result);

    std::unique_ptr<Ui::ResultTable> m_ui;
};
