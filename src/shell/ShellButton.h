#pragma once

#include <QToolButton>

/// An action of the window as a button for fingers: symbol above, text below, the keys in its tip and
/// the last of them in its corner. It may be
/// reached by Tab. GUI thread.
class ShellButton : public QToolButton
{
    Q_OBJECT

public:
    ShellButton(QAction* action, QWidget* parent);

    /// Whether it is where one is; the style sheet shows it by the property "current".
    static void mark(QToolButton* button, bool current);

    QSize sizeHint() const override;
    /// In a low window nothing but the finger's height is left.
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void follow();
};
