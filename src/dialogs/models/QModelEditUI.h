#pragma once

#include "dialogs/models/ModelFile.h"

#include <QDialog>

#include <functional>
#include <memory>

class ModelManager;

namespace Ui {
class QModelEditUI;
}

/// Name, PLC index and calibrated flag of one model: a new one, a copy, one from a file, or one that is changed. Judged
/// while it is typed; nothing happens before OK, and the dialog stays open with the reason when it could not be done.
class QModelEditUI : public QDialog
{
    Q_OBJECT

public:
    enum class Purpose { Add, Modify, Copy, Import };

    struct Task
    {
        Purpose purpose = Purpose::Add;
        ModelEntry entry; ///< what the fields show first
        QString ownName;  ///< of the model that is modified; empty for a new one
        /// What there is to know about a name that could be taken; may be left out.
        std::function<QString(const QString& name)> remark;
        /// Does it, or says why not.
        std::function<bool(const ModelEntry& entry, QString* error)> submit;
    };

    /// `models` outlives the dialog.
    explicit QModelEditUI(const ModelManager& models, QWidget* parent = nullptr);
    ~QModelEditUI() override;

    /// Opens the dialog for one task, in the place of one that is still open. Returns at once.
    void begin(const Task& task);

public slots:
    /// OK: submits, and closes when it was done.
    void accept() override;

protected:
    void changeEvent(QEvent* event) override;

private:
    ModelEntry typed() const;
    bool canBeNamed(const QString& name, QString* problem) const;
    QString problem() const;
    void judge();
    void retranslate();

    std::unique_ptr<Ui::QModelEditUI> m_ui;
    const ModelManager& m_models;
    Task m_task;
};
