#pragma once

#include "model/ModelId.h"

#include <QImage>
#include <QWidget>

#include <memory>

class IEngine;
class ImageLoader;
class ModelDrafts;
class TaskRunner;
struct TaskResult;

namespace Ui {
class TryPanel;
}

/// Runs the chosen model on one image file and shows what the engine found.
class TryPanel : public QWidget
{
    Q_OBJECT

public:
    /// Both outlive the panel.
    TryPanel(IEngine* engine, ModelDrafts* drafts, QWidget* parent = nullptr);
    ~TryPanel() override;

    void setModel(const ModelId& id);

public slots:
    /// Loads the image and runs the model on it as soon as it is there.
    void openImage(const QString& path);
    void run();

signals:
    void failed(const QString& message);

private:
    void chooseImage();
    void takeImage(const QString& path, const QImage& image);
    void takeResult(quint64 ticket, const TaskResult& result);
    void updateState();

    ModelDrafts* m_drafts;
    std::unique_ptr<Ui::TryPanel> m_ui;
    ImageLoader* m_loader;
    TaskRunner* m_runner;
    ModelId m_id;
    QImage m_image;
    QString m_path;
    quint64 m_ticket = 0; ///< of the run whose result is wanted; older ones are dropped
    bool m_running = false;
};
