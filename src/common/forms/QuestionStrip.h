#pragma once

#include <QFrame>

#include <functional>
#include <memory>

namespace Ui {
class QuestionStrip;
}

/// A question with its answers inside a dialog, instead of a box in front of it. One question at a time: a new one
/// takes the place of an unanswered one. Hidden while nothing is asked.
class QuestionStrip : public QFrame
{
    Q_OBJECT

public:
    struct Answer
    {
        QString text; ///< empty: there is no such answer
        std::function<void()> act;
    };

    explicit QuestionStrip(QWidget* parent = nullptr);
    ~QuestionStrip() override;

    /// "Cancel" is always among the answers and has the focus, so that a stray Enter answers nothing.
    void ask(const QString& question, const Answer& first, const Answer& second = {});

    struct NameAnswer
    {
        QString text;
        std::function<void(const QString& name)> act;
    };
    /// Asks for a name. `problem` judges what is typed so far; its text is shown while it is not empty, and the answer
    /// is off.
    void askName(const QString& question, const QString& proposal, const NameAnswer& answer,
                 std::function<QString(const QString&)> problem);

    bool isAsking() const { return !isHidden(); }

public slots:
    /// Takes the question back.
    void dismiss();

signals:
    /// The question was taken back, or answered by "cancel".
    void dismissed();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void present(const QString& question, const Answer& first, const Answer& second);
    void judgeName();
    void answer(const std::function<void()>& act);

    std::unique_ptr<Ui::QuestionStrip> m_ui;
    Answer m_first;
    Answer m_second;
    std::function<QString(const QString&)> m_problem; ///< empty unless a name is asked for
};
