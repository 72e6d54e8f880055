#pragma once

#include <QVariantMap>
#include <QWidget>

#include <memory>

class FolderProbe;

namespace Ui {
class CameraForm;
}

/// The fields of a camera's settings: exposure, gain, transfer time and folder, as far as the camera has them.
class CameraForm : public QWidget
{
    Q_OBJECT

public:
    explicit CameraForm(QWidget* parent = nullptr);
    ~CameraForm() override;

    /// Shows the fields for these settings, by the names of ICameraSettings; others are left alone.
    void setSettings(const QVariantMap& settings);
    /// What the shown fields hold.
    QVariantMap values() const;
    /// The first thing that is wrong, in the operator's language; empty when all can be taken.
    QString problem() const;
    /// What can be taken, though it will hardly work: an image folder that does not exist (yet).
    QString warning() const;

signals:
    /// Somebody typed.
    void edited();
    /// More is known about what was typed.
    void warningChanged();

protected:
    void changeEvent(QEvent* event) override;

private:
    struct Row;

    QVector<Row> rows() const;
    void askFolder();
    void lookForFolder();
    QString folder() const;

    std::unique_ptr<Ui::CameraForm> m_ui;
    FolderProbe* m_probe;
    QVariantMap m_shown;
};
