#pragma once

#include <QObject>
#include <QPointer>

class KeyPanel;

/// A keyboard on the screen for every text field of the process, in whatever window and of whatever module: letters
/// with capitals and symbols, or digits for a field of numbers (Qt::ImhFormattedNumbersOnly and its like). It comes
/// where a finger touched a field, unless the system shows one of its own, and leaves when a real key is pressed or the
/// field is left. Keys arrive at the field as if typed; other scripts are for the system's input method. The choice is
/// kept in "/user/look.ini" below the home. One for each process. GUI thread.
class ScreenKeyboard : public QObject
{
    Q_OBJECT

public:
    enum class Comes { OnTouch, Always, Never };

    /// As it was chosen last; on touch before any choice.
    explicit ScreenKeyboard(QObject* parent);
    ~ScreenKeyboard() override;

    Comes comes() const { return m_comes; }

public slots:
    /// When it comes, from now on; kept.
    void choose(ScreenKeyboard::Comes comes);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void onFocus(QWidget* old, QWidget* now);
    void onPointer(QObject* object, const class QMouseEvent& event);
    void offer(QWidget* field);
    void place();
    void hide();
    void type(int key, const QString& text);
    bool isAllowed() const;

    Comes m_comes = Comes::OnTouch;
    bool m_isFinger = false; ///< pressed last, and no key since
    QPointer<QWidget> m_field;
    QPointer<KeyPanel> m_panel; ///< a child of the field's window
};
