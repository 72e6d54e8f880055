#pragma once

#include "model/ModelId.h"

#include <QWidget>

#include <memory>

class IEngine;
class ModelDrafts;
class ModelPanel;
class BatchPanel;
class ExampleStore;
class TryPanel;
class QImage;
class QTabWidget;

namespace Ui {
class DesignerWindow;
}

/// The designer's window: models on the left, their parameters in the middle, the try-out on the right, one line for
/// messages below. Closing with unsaved changes asks inside the window.
class DesignerWindow : public QWidget
{
    Q_OBJECT

public:
    /// `engine` may be null and may lack the solution store: the window then says so. It outlives the window.
    explicit DesignerWindow(IEngine* engine, QWidget* parent = nullptr);
    ~DesignerWindow() override;

    /// Offers a camera's image for trying; dropped when nobody follows that camera. Shares the image.
    void showCaptured(const QString& cameraKey, const QImage& image);

    /// Runs that model on a picture file; an unknown one leaves the choice as it was.
    void tryImage(const ModelId& id, const QString& path);

    /// Writes a fact into the message line; it stays until the next one.
    void showMessage(const QString& message);
    /// Writes what went wrong, standing out, and with the reason that the failing operation gave.
    void showError(const QString& message);

    /// The models with unsaved changes, by "solution / model".
    QStringList unsavedNames() const;
    /// Hides the window and what it has opened, and stops a re-run; asks nothing and keeps unsaved changes.
    void leave();

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    /// Gives a panel's messages to the message line.
    template <typename Panel>
    Panel* adopt(Panel* panel);
    void build();
    void buildPanels();
    void explainMissing();
    /// Makes all panels anew; drafts, the chosen model and the tried image file stay, a re-run under way is dropped.
    void switchLanguage();
    void askBeforeClosing();
    /// Stops at the first model that cannot be saved, with that model chosen and the window open.
    void saveAllAndClose();
    void dropAllAndClose();
    void updateTitle();

    std::unique_ptr<Ui::DesignerWindow> m_ui;
    IEngine* m_engine;
    ExampleStore* m_examples = nullptr;
    ModelDrafts* m_drafts = nullptr;
    ModelPanel* m_models = nullptr;
    TryPanel* m_trial = nullptr;
    BatchPanel* m_batch = nullptr;
    QTabWidget* m_tabs = nullptr;
};
