#pragma once

#include "batch/BatchRow.h"
#include "common/Background.h"

#include <valvecell/IModelExamples.h>

#include <QWidget>

#include <memory>

class QAction;
struct ImageFile;

namespace Ui {
class ReviewBar;
}

/// Shows the place that a run found in one image, and asks a person whether it is the hole.
class ReviewBar : public QWidget
{
    Q_OBJECT

public:
    explicit ReviewBar(QWidget* parent = nullptr);
    ~ReviewBar() override;

    /// Shows the row's place; its image is read on a thread. A row without a place says so.
    void setRow(const BatchRow& row);
    void clear();
    /// Whether there is a model that can learn; a built-in one cannot.
    void setTeachable(bool teachable);

    /// The two answers, for the table's context menu, with their keys.
    QList<QAction*> answers() const { return {m_hole, m_rejected}; }

signals:
    void judged(IModelExamples::Kind kind);

private:
    void showPlace(const ImageFile& file);
    void updateState();

    std::unique_ptr<Ui::ReviewBar> m_ui;
    QAction* m_hole;
    QAction* m_rejected;
    BatchRow m_row;
    bool m_teachable = true;
    Background m_background{Background::AtEnd::Wait};
};
