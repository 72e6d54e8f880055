#pragma once

#include "model/ModelId.h"

#include <QWidget>

#include <memory>

class ModelDrafts;

namespace Ui {
class ParameterPanel;
}

/// Shows and edits the parameters of one model. What is typed becomes the model's draft at once; saving is the only
/// step that reaches the engine.
class ParameterPanel : public QWidget
{
    Q_OBJECT

public:
    /// `drafts` outlives the panel.
    explicit ParameterPanel(ModelDrafts* drafts, QWidget* parent = nullptr);
    ~ParameterPanel() override;

    /// Null for none. The former model's draft stays.
    void setModel(const ModelId& id);

signals:
    /// Saving was refused; the edit stays as it is.
    void failed(const QString& message);
    void done(const QString& message);

private:
    void refresh();
    void updateState();
    void save();

    ModelDrafts* m_drafts;
    std::unique_ptr<Ui::ParameterPanel> m_ui;
    ModelId m_id;
};
