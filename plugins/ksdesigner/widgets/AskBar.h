#pragma once

#include <QFrame>

#include <functional>
#include <memory>

namespace Ui {
class AskBar;
}

/// A question with its answers inside the window, instead of a box in front of it. One question at a time: a new one
/// takes the place of an unanswered one. Hidden while nothing is asked.
class AskBar : public QFrame
{
    Q_OBJECT

public:
    explicit AskBar(QWidget* parent = nullptr);
    ~AskBar() override;

    struct Answer
    {
        QString text;
        std::function<void()> act;
    };
    /// `second` may have an empty text: then there is one answer besides "cancel".
    void ask(const QString& question, const Answer& first, const Answer& second = {});

    struct NameAnswer
    {
        QString text;
        std::function<void(const QString& name)> act;
    };
    /// Asks for a name. `problem` judges what is typed so far; its text is shown while it is not empty.
    void askName(const QString& question, const QString& proposal, const NameAnswer& answer,
                 std::function<QString(const QString&)> problem);

public slots:
    /// Takes the question back.
    void dismiss();

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void present(const QString& question, const QString& first, const QString& second, bool named);
    void judgeName();
    void answer(const std::function<void()>& act);

    std::unique_ptr<Ui::AskBar> m_ui;
    Answer m_first;
    Answer m_second;
    std::function<QString(const QString&)> m_problem;
};
