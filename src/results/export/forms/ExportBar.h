#pragma once

#include "common/Background.h"
#include "results/export/ExportOutcome.h"

#include <QVector>
#include <QWidget>

#include <functional>
#include <memory>

class ExportProgress;
class InlineMessage;
class QAction;
class QProgressBar;
class QPushButton;
class QTimer;

/// The button of a page that writes what it shows into a file, with its progress, a way to cancel and how it ended. The
/// writing goes on a thread, and is cancelled when the page goes.
class ExportBar : public QWidget
{
    Q_OBJECT

public:
    using Work = std::function<ExportOutcome(const QString& path, ExportProgress& progress)>;
    struct Choice
    {
        std::function<QString()> text; ///< in the present language
        QString suffix;                ///< of the file; empty for a folder
        std::function<QString()> name; ///< of the file, without the suffix
        /// What the thread does, with all that is shown at the moment of the click. GUI thread.
        std::function<Work()> prepare;
    };

    explicit ExportBar(QWidget* parent = nullptr);
    ~ExportBar() override;

    void addChoice(Choice choice);
    /// Writes without asking for the file.
    void write(int choice, const QString& path);

signals:
    void finished(const ExportOutcome& outcome);

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();
    void ask(int choice);
    void finish(const ExportOutcome& outcome);

    QVector<Choice> m_choices;
    QVector<QAction*> m_actions;
    InlineMessage* m_message;
    QProgressBar* m_bar;
    QPushButton* m_cancel;
    QPushButton* m_button;
    QTimer* m_look; ///< while one is written
    std::shared_ptr<ExportProgress> m_progress;
    Background m_background;
};
