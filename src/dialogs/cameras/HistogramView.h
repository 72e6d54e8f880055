#pragma once

#include "dialogs/cameras/PictureMeasures.h"

#include <QWidget>

/// The levels of a picture from dark to light; the share that is overexposed stands at the right end in the colour of
/// what is wrong. GUI thread.
class HistogramView : public QWidget
{
    Q_OBJECT

public:
    explicit HistogramView(QWidget* parent = nullptr);

    void setMeasures(const PictureMeasures& measures);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    PictureMeasures m_measures;
};
