#pragma once

#include "licence/Registration.h"

#include <QObject>

#include <memory>

class QCryptokeyUI;
class QWidget;

/// The program's licence: "user/licence.lic" below the home, checked once at the start, and entered anew in the
/// registration dialog. Nothing but the banner depends on it. GUI thread.
class LicenceDesk : public QObject
{
    Q_OBJECT

public:
    /// `window` outlives the desk; the dialog is shown over it.
    explicit LicenceDesk(QWidget* window);
    ~LicenceDesk() override;

    /// Whether the licence counts. The system log learns why one that is there does not, and when one ends soon.
    bool check() const;

    const QCryptokeyUI* dialog() const { return m_dialog.get(); }

    void openDialog();

private:
    QWidget* m_window;
    Registration m_registration;
    std::unique_ptr<QCryptokeyUI> m_dialog;
};
