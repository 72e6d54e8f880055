#pragma once

#include "model/ExampleStore.h"

#include <QWidget>

#include <memory>

class ModelDrafts;

namespace Ui {
class ExamplePanel;
}

/// What a model has been shown, as strips of small pictures, and the sizes that these suggest. A suggestion that is
/// applied becomes the model's draft. Hidden where nothing can be shown.
class ExamplePanel : public QWidget
{
    Q_OBJECT

public:
    /// Both outlive the panel.
    ExamplePanel(ExampleStore* examples, ModelDrafts* drafts, QWidget* parent = nullptr);
    ~ExamplePanel() override;

    /// Null for none.
    void setModel(const ModelId& id);

signals:
    void failed(const QString& message);
    void done(const QString& message);

private:
    void refresh();
    void showProposal();
    void updateButtons();
    void remove();
    void apply();

    ExampleStore* m_examples;
    ModelDrafts* m_drafts;
    std::unique_ptr<Ui::ExamplePanel> m_ui;
    ModelId m_id;
    QVariantMap m_proposed; ///< what the proposal changes of the stored parameters
};
