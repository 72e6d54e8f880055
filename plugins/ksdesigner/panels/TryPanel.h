#pragma once

#include "common/Background.h"
#include "common/ImageFile.h"
#include "model/ModelId.h"

#include <QTimer>
#include <QWidget>

#include <memory>

class ExampleStore;
class IEngine;
class ModelDrafts;
class TaskRunner;
class TeachGuide;
struct Trial;

namespace Ui {
class TryPanel;
}

/// Runs the chosen model on an image file or the next camera image, shows what the engine found, and teaches the model
/// by two clicks. Where the engine runs unsaved parameters, every edit is tried at once.
class TryPanel : public QWidget
{
    Q_OBJECT

public:
    /// All outlive the panel.
    TryPanel(IEngine* engine, ModelDrafts* drafts, ExampleStore* examples, QWidget* parent = nullptr);
    ~TryPanel() override;

    /// Runs the model at once when there is an image. A teaching under way is given up.
    void setModel(const ModelId& id);

    /// An image of a camera; taken when this camera is followed and nothing is being taught or run.
    void offerCaptured(const QString& cameraKey, const QImage& image);

    /// The path of the image that was opened; empty while it is a camera's or there is none.
    QString imageFile() const { return m_path; }

public slots:
    /// Loads the image and runs the model on it as soon as it is there.
    void openImage(const QString& path);
    /// Runs the image again; during a run, once more after it. Does nothing without image or model, or while the
    /// parameters have a problem.
    void run();

signals:
    void failed(const QString& message);
    void done(const QString& message);

private:
    void connectAll();
    void chooseImage();
    void takeFile(const ImageFile& file);
    void takeImage(const QString& name, const QImage& image);
    void takeResult(const Trial& trial);
    void takeProposal(const QVariantMap& parameters, const QVariantMap& example);
    /// Offers to make a place of the image an example of the model.
    void offerExample(const QPointF& point, const QPoint& globalPosition);
    void showTeaching();
    void modelChanged(const ModelId& id);
    /// What is with the engine belongs to a former image or model from now on.
    void forgetResult();
    void updateState();
    /// Which parameters the run uses, where that is not plain to see.
    QString note() const;

    ModelDrafts* m_drafts;
    ExampleStore* m_examples;
    std::unique_ptr<Ui::TryPanel> m_ui;
    TaskRunner* m_runner;
    TeachGuide* m_teach;
    QTimer m_editPause; ///< an edit is tried when the typing pauses
    ModelId m_id;
    QImage m_image;
    QString m_path;
    quint64 m_ticket = 0; ///< of the run whose result is wanted; older ones are dropped
    bool m_running = false;
    bool m_again = false; ///< something changed during the run
    Background m_background{Background::AtEnd::Wait};
};
