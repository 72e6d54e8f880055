#pragma once

#include "common/Background.h"
#include "home/Backup.h"

#include <QDialog>
#include <QPointer>
#include <QVector>

#include <atomic>
#include <memory>

class QCheckBox;
class QFileDialog;

namespace Ui {
class QBackupUI;
}

/// Backs up the chosen parts of a running home to one file, and prepares a restoration: the backup is read, compared
/// and laid ready while production goes on, and put in place at the program's next start. GUI thread; the work runs on
/// a thread of its own, and ends when the dialog goes.
class QBackupUI : public QDialog
{
    Q_OBJECT

public:
    explicit QBackupUI(const QString& home, QWidget* parent = nullptr);
    ~QBackupUI() override;

    /// Writes a backup of the parts that are checked to that file.
    void backUp(const QString& file);
    /// Lays the parts that are checked and that the backup holds ready for the next start.
    void prepareRestore(const QString& file);

signals:
    /// For the log: "backup" or "restore", and the file.
    void done(const QString& what, const QString& file);

protected:
    void changeEvent(QEvent* event) override;
    void reject() override;

private:
    void connectAll();
    void addParts();
    void setTexts();
    void chooseTarget();
    void chooseBackup();
    void dropRestore();
    HomeParts::Set chosen() const;
    /// Runs work on the thread, with a progress that shows and that the button stops.
    void run(const std::function<Backup::Outcome(const Backup::Progress&)>& work,
             const std::function<void(const Backup::Outcome&)>& done);
    void showBusy(bool busy);
    void showPending();

    std::unique_ptr<Ui::QBackupUI> m_ui;
    const QString m_home;
    QVector<QCheckBox*> m_parts; ///< in the order of HomeParts::all()
    QPointer<QFileDialog> m_chooser;
    bool m_busy = false;
    const std::shared_ptr<std::atomic<bool>> m_stop = std::make_shared<std::atomic<bool>>(false);
    Mailbox m_mailbox;
    Background m_background{Background::AtEnd::Wait};
};
