#pragma once

#include <valvecell/ICameraList.h>
#include <valvecell/ICameraParameters.h>

#include <QDialog>

#include <functional>
#include <memory>

struct CameraAccess;
struct FoundCamera;

namespace Ui {
class QCameraEditUI;
}

/// Name, type and settings of one camera, for the list that is being edited; a camera that was found on network or bus
/// fills them in. Judged while it is typed.
class QCameraEditUI : public QDialog
{
    Q_OBJECT

public:
    struct Task
    {
        bool isNew = true; ///< or else the name is fixed: stations refer to it
        CameraEntry entry; ///< what the fields show first
        /// Why a new camera cannot have that name; empty when it can.
        std::function<QString(const QString& key)> keyProblem;
        /// Takes what was typed.
        std::function<void(const CameraEntry& entry)> submit;
    };

    /// `cameras` outlives the dialog, and can list cameras.
    explicit QCameraEditUI(CameraAccess& cameras, QWidget* parent = nullptr);
    ~QCameraEditUI() override;

    /// Opens the dialog for one task, in the place of one that is still open. Returns at once.
    void begin(const Task& task);

public slots:
    void accept() override;

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();
    void listTypes();
    QVector<CameraParameter> parameters() const;
    CameraType type() const;
    CameraEntry typed() const;
    void showSettings();
    void take(const FoundCamera& found);
    QString proposedKey(const FoundCamera& found) const;
    QString problem() const;
    void judge();

    std::unique_ptr<Ui::QCameraEditUI> m_ui;
    CameraAccess& m_cameras;
    Task m_task;
    QString m_proposed; ///< the name that was filled in for a found camera
};
