// A designer, a line and a log-in, wrong likewise.

#include <valvecell/Export.h>
#include <valvecell/IDesigner.h>
#include <valvecell/IDesignerEdits.h>
#include <valvecell/IEngine.h>
#include <valvecell/ISerialPort.h>
#include <valvecell/ISerialPorts.h>
#include <valvecell/ISerialReopen.h>
#include <valvecell/ISerialSession.h>
#include <valvecell/ISerialStatus.h>
#include <valvecell/ISerialUrgent.h>
#include <valvecell/IUserCtrl.h>

#include <QApplication>
#include <QDialog>
#include <QFile>

#include <thread>

namespace {

class FaultyDesigner : public IDesigner, public IDesignerEdits
{
public:
    void attachEngine(IEngine*) override {}
    void openDesigner(QWidget* parent) override
    {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        qApp->setStyleSheet(QStringLiteral("QWidget { color: red; }"));
        m_window = new QWidget(parent, Qt::Window);
        m_window->show();
        QDialog(m_window).exec();
    }
    QStringList unsaved() override { return {QStringLiteral("all")}; }
    void hideDesigner() override {}
    void* extension(const char* id) override
    {
        return qstrcmp(id, IDesignerEdits::id) == 0 ? static_cast<IDesignerEdits*>(this) : nullptr;
    }
    ~FaultyDesigner() override { m_window->setWindowTitle(QString()); }

private:
    QWidget* m_window = nullptr;
};

class FaultyLine : public ISerialPort,
                   public ISerialSession,
                   public ISerialUrgent,
                   public ISerialReopen,
                   public ISerialPorts,
                   public ISerialStatus
{
public:
    void setReceiveCallback(QObject*, ReceiveCallback callback) override { m_receive = std::move(callback); }
    bool open(const QString& port, const QString&) override
    {
        m_line.setFileName(port);
        m_line.open(QIODevice::ReadWrite | QIODevice::Unbuffered);
        return true;
    }
    void close() override { m_receive(SComFrame()); }
    void send(const SComFrame* frame) override { sendUrgent(*frame, 0); }
    quint64 session() const override { return 7; }
    void send(const SComFrame& frame, quint64) override { sendUrgent(frame, 0); }
    void sendUrgent(const SComFrame& frame, quint64) override
    {
        m_line.write(reinterpret_cast<const char*>(&frame), sizeof frame);
        std::thread([this] { m_receive(SComFrame()); }).join();
    }
    bool reopen(const QString&, const QString&) override
    {
        m_line.close();
        return true;
    }
    std::function<QVector<FoundPort>()> finder() const override
    {
        return [] { return QVector<FoundPort>(); };
    }
    QString problemOf(const QString&) const override { return {}; }
    SerialStatus status() const override { return {}; }
    void* extension(const char* id) override
    {
        const QByteArray asked(id);
        return asked == ISerialSession::id  ? static_cast<ISerialSession*>(this)
               : asked == ISerialUrgent::id ? static_cast<ISerialUrgent*>(this)
               : asked == ISerialReopen::id ? static_cast<ISerialReopen*>(this)
               : asked == ISerialPorts::id  ? static_cast<ISerialPorts*>(this)
               : asked == ISerialStatus::id ? static_cast<void*>(static_cast<ISerialStatus*>(this))
                                            : nullptr;
    }

private:
    ReceiveCallback m_receive;
    QFile m_line;
};

class FaultyUsers : public IUserCtrl
{
public:
    void showLogInDialog(QWidget*) override
    {
        m_state = LoggedIn;
        Q_EMIT sgCurrentUserInfo({}, 9, LoggedIn);
    }
    void showUserManager(QWidget*) override { (new QWidget)->show(); }
    void logOut() override
    {
        if (m_state == LoggedOut)
            Q_EMIT sgCurrentUserInfo({}, 0, LoggedOut);
        m_state = LoggedOut;
    }
    QString currentUserName() override { return QStringLiteral("boss"); }
    int state() override { return m_state; }

private:
    int m_state = s_first++ ? LoggedOut : 7;
    static inline int s_first = 0;
};

} // namespace

#if defined(FAKE_ksdesigner)
VALVECELL_MODULE_EXPORT void* Lib_Designer_Init(void*)
{
    return static_cast<IDesigner*>(new FaultyDesigner);
}
#elif defined(FAKE_SerialPortTool)
VALVECELL_MODULE_EXPORT ISerialPort* SerialPortCreate()
{
    return new FaultyLine;
}
#else
VALVECELL_MODULE_EXPORT IUserCtrl* UserCtrlCreate()
{
    return new FaultyUsers;
}
#endif
