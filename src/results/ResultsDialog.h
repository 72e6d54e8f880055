#pragma once

#include "results/ResultsView.h"

#include <QDialog>

/// The pages in a window of the cell's program, which runs on beside it. GUI thread.
class ResultsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ResultsDialog(QWidget* parent = nullptr);
    ~ResultsDialog() override;

    ResultsView& view() { return *m_view; }

    /// Shows it, or brings it to the front, with what there is now; returns at once.
    void open() override;

protected:
    void changeEvent(QEvent* event) override;

private:
    ResultsView* m_view;
};
