#pragma once

#include "common/Background.h"

#include <QImage>
#include <QWidget>

#include <memory>

struct CameraStatistics;
struct PictureMeasures;

namespace Ui {
class PictureGauges;
}

/// Gauges beside a live picture, for light and focus: histogram, overexposed share, and the focus figure with the best
/// one seen, so that the ring can be turned to the maximum and back to it. Measures on a thread of its own; of pictures
/// that come faster than that, the latest counts. GUI thread.
class PictureGauges : public QWidget
{
    Q_OBJECT

public:
    explicit PictureGauges(QWidget* parent = nullptr);
    ~PictureGauges() override;

    void showPicture(const QImage& image);
    void showStatistics(const CameraStatistics& statistics);
    /// Forgets the best focus figure: another scene, or another lens.
    void forgetBest();

protected:
    void changeEvent(QEvent* event) override;

private:
    void measure();
    void show(const PictureMeasures& measures);
    void showFigures();

    std::unique_ptr<Ui::PictureGauges> m_ui;
    QImage m_next; ///< to be measured
    bool m_measuring = false;
    bool m_any = false; ///< a picture was measured
    double m_overexposed = 0;
    double m_focus = 0;
    double m_bestFocus = 0;
    Background m_background{Background::AtEnd::Finish};
};
