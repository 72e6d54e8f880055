#pragma once

#include "shell/CellState.h"

#include <QAbstractButton>

/// One face of the cell's state: symbol, caption, word and colour, as large as a finger. GUI thread.
class StatePill : public QAbstractButton
{
    Q_OBJECT

public:
    explicit StatePill(QWidget* parent = nullptr);

    /// Nothing is painted anew while nothing differs.
    void setFace(const StateFace& face);
    StateFace::Sign sign() const { return m_face.sign; }
    const char* page() const { return m_face.page; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void describe();

    StateFace m_face{};
};
