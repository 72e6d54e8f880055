#pragma once

#include "run/TaskRunner.h"

#include <QWidget>

#include <memory>

class ImageView;

namespace Ui {
class TrialView;
}

/// One image with what a trial found in it: the engine's drawing, the bare image, or one stage of the engine's work,
/// as chosen. The choice stays from trial to trial.
class TrialView : public QWidget
{
    Q_OBJECT

public:
    explicit TrialView(QWidget* parent = nullptr);
    ~TrialView() override;

    /// Shows the image alone and forgets the last trial.
    void setImage(const QImage& image);
    /// Shows what came of the image; its stages join the choice.
    void setTrial(const Trial& trial);
    /// For as long as points are picked, the bare image is shown whatever the choice.
    void setPicking(bool picking);

    /// Whether the view's points are those of the image, and not of a stage's own picture.
    bool isShowingImage() const;

    /// For picking points and marking them.
    ImageView* view() const;

private:
    void listStages();
    void showChoice();
    void showStage(const TrialStage& stage);

    std::unique_ptr<Ui::TrialView> m_ui;
    QImage m_image;
    Trial m_trial;
    bool m_picking = false;
};
