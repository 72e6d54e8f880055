// One engineer without a password, who logs in by asking for it: for a plant that locks the room instead.

#include <valvecell/Export.h>
#include <valvecell/IUserCtrl.h>

namespace {

constexpr int nobody = 0;
constexpr int engineer = 2;

class SingleUser : public IUserCtrl
{
public:
    void showLogInDialog(QWidget*) override { change(true); }
    void showUserManager(QWidget*) override {}
    void logOut() override { change(false); }
    QString currentUserName() override { return m_here ? QStringLiteral("engineer") : QString(); }
    int state() override { return m_here ? LoggedIn : LoggedOut; }

private:
    void change(bool here)
    {
        if (here == m_here)
            return;
        m_here = here;
        Q_EMIT sgCurrentUserInfo(currentUserName(), here ? engineer : nobody, state());
    }

    bool m_here = false;
};

} // namespace

VALVECELL_MODULE_VERSION("1.0")

VALVECELL_MODULE_EXPORT IUserCtrl* UserCtrlCreate()
{
    return new SingleUser;
}
