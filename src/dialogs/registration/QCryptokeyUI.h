#pragma once

#include "licence/Registration.h"

#include <QDialog>
#include <QPointer>

#include <memory>

class QFileDialog;

namespace Ui {
class QCryptokeyUI;
}

/// Registers the program: shows the code of this machine, takes a licence from a file or pasted, and says at once what
/// is wrong with it. Only a licence that counts can be stored. GUI thread.
class QCryptokeyUI : public QDialog
{
    Q_OBJECT

public:
    /// `registration` outlives the dialog.
    explicit QCryptokeyUI(Registration& registration, QWidget* parent = nullptr);
    ~QCryptokeyUI() override;

    /// Whether the program counts as registered now.
    void setRegistered(bool registered);
    /// The code of the machine has been found out.
    void showMachine();

public slots:
    /// Takes the licence of a file, and judges it; nothing is stored yet.
    void openFile(const QString& path);

signals:
    /// A licence was stored; the program counts as registered.
    void sgRegisterFinish(bool registered);

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void connectAll();
    void showState();
    void copyCode();
    void chooseFile();
    void takeText();
    void judge();
    void submit();

    std::unique_ptr<Ui::QCryptokeyUI> m_ui;
    Registration& m_registration;
    QByteArray m_candidate; ///< the exact bytes of a file, which an edit field would not keep
    bool m_registered = false;
    QPointer<QFileDialog> m_chooser;
};
