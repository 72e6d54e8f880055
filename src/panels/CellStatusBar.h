#pragma once

#include <QStatusBar>

class QLabel;

/// Date and run time, user, mode and PLC link, and the banner of a system that is not registered. The window ticks it
/// once a second.
class CellStatusBar : public QStatusBar
{
    Q_OBJECT

public:
    explicit CellStatusBar(QWidget* parent = nullptr);

    /// The PLC was heard.
    void linkAlive();
    /// One second has passed: refreshes all; after more than five without linkAlive() the link counts as lost.
    void tick(bool online);
    void setUserName(const QString& name);
    /// Shows the banner while the system is not registered; hidden until then.
    void setRegistered(bool registered);

    bool isLinkUp() const { return m_linkUp; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void refresh();

    QLabel* m_time;
    QLabel* m_user;
    QLabel* m_mode;
    QLabel* m_link;
    QLabel* m_banner;
    QString m_userName;
    qint64 m_runSeconds = 0;
    int m_silentSeconds = 0;
    bool m_linkUp = false;
    bool m_online = true;
};
