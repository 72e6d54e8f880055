#pragma once

#include "common/Background.h"
#include "licence/Registration.h"

#include <QObject>

#include <memory>

class QCryptokeyUI;
class QWidget;

/// The program's licence: "user/licence.lic" below the home, checked at the start and once a day, and entered anew in
/// the registration dialog. Nothing but the banner depends on it. GUI thread.
class LicenceDesk : public QObject
{
    Q_OBJECT

public:
    /// `window` outlives the desk; the dialog is shown over it.
    explicit LicenceDesk(QWidget* window);
    ~LicenceDesk() override;

    /// Begins a check when the day is another than that of the last one: judged() follows. The machine is asked for its
    /// code on a thread, since one that has just been switched on may take a minute to answer.
    void checkDaily();

    const QCryptokeyUI* dialog() const { return m_dialog.get(); }

    void openDialog();

signals:
    /// Whether the licence counts. The system log has learnt why one that is there does not, and when one ends soon,
    /// and when the clock was put back since the last check.
    void judged(bool registered);

private:
    void judge();

    QWidget* m_window;
    QDate m_checkedOn;
    Registration m_registration;
    std::unique_ptr<QCryptokeyUI> m_dialog;
    Background m_machine{Background::AtEnd::Abandon};
};
