#include "host/Messages.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QIcon>
#include <QMessageBox>

namespace messages {

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("CMainWin", text);
}

} // namespace

void fatal(const QString& text)
{
    QMessageBox box(QMessageBox::Critical, QStringLiteral("提示"), text, QMessageBox::Yes);
    box.button(QMessageBox::Yes)->setText(QStringLiteral("确认"));
    box.setWindowIcon(QIcon(QStringLiteral(":/image/vantor")));
    box.exec();
}

void portNotOpen(QWidget* parent, const QString& port, const QString& baudRate)
{
    QMessageBox box(QMessageBox::Information, translated(QT_TRANSLATE_NOOP("CMainWin", "提示")),
                    QStringLiteral("Com %1 %2 open failed").arg(port, baudRate), QMessageBox::Yes | QMessageBox::No,
                    parent, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint);
    box.setWindowIcon(QIcon(QStringLiteral(":/vantor/Resource/app.png")));
    box.exec();
}

bool confirmClose(QWidget* parent)
{
    QMessageBox box(QMessageBox::Warning, QStringLiteral("警告"), QStringLiteral("本检测系统正在运行，您真的要关闭？"),
                    QMessageBox::Ok | QMessageBox::Cancel, parent);
    box.button(QMessageBox::Ok)->setText(QStringLiteral("确定"));
    box.button(QMessageBox::Cancel)->setText(QStringLiteral("取消"));
    box.setWindowIcon(QIcon(QStringLiteral(":/vantor/Resource/app.png")));
    return box.exec() == QMessageBox::Ok;
}

} // namespace messages
