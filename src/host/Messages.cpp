#include "host/Messages.h"

#include <valvecell/HostChoice.h>

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

void critical(const QString& title, const QString& text, const QString& details = {})
{
    QMessageBox box(QMessageBox::Critical, title, text, QMessageBox::Yes);
    box.setInformativeText(details);
    box.button(QMessageBox::Yes)->setText(translated(QT_TRANSLATE_NOOP("CMainWin", "确认")));
    box.setWindowIcon(QIcon(QStringLiteral(":/image/vantor")));
    box.exec();
}

} // namespace

void fatal(const QString& text, const QString& details)
{
    critical(QStringLiteral("提示"), text, details);
}

QString alreadyRuns()
{
    return translated(
        QT_TRANSLATE_NOOP("CMainWin", "本进程中已有一个程序在运行，请先用 MainWidget_Delete 交还，再重新创建"));
}

void notEnabled()
{
    critical(translated(QT_TRANSLATE_NOOP("CMainWin", "提示")),
             translated(QT_TRANSLATE_NOOP("CMainWin", "该功能未启用.")));
}

bool confirmLogOut(QWidget* parent, const QString& user)
{
    QMessageBox box(QMessageBox::Question, translated(QT_TRANSLATE_NOOP("CMainWin", "提示")),
                    translated(QT_TRANSLATE_NOOP("CMainWin", "你确定要注销%1 ?")).arg(user),
                    QMessageBox::Yes | QMessageBox::No, parent);
    box.button(QMessageBox::Yes)->setText(translated(QT_TRANSLATE_NOOP("CMainWin", "确认")));
    box.button(QMessageBox::No)->setText(translated(QT_TRANSLATE_NOOP("CMainWin", "取消")));
    return box.exec() == QMessageBox::Yes;
}

bool confirmShiftReset(QWidget* parent, int station)
{
    QMessageBox box(
        QMessageBox::Question, translated(QT_TRANSLATE_NOOP("CMainWin", "提示")),
        translated(QT_TRANSLATE_NOOP("CMainWin", "将工位%1的本班计数清零？今日计数和检测记录不受影响。")).arg(station),
        QMessageBox::Yes | QMessageBox::No, parent);
    box.button(QMessageBox::Yes)->setText(translated(QT_TRANSLATE_NOOP("CMainWin", "清零")));
    box.button(QMessageBox::No)->setText(translated(QT_TRANSLATE_NOOP("CMainWin", "取消")));
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

void portNotOpen(QWidget* parent, const QString& port, const QString& baudRate)
{
    if (HostChoice::isUnattended())
        return qWarning("Com %s %s open failed", qUtf8Printable(port), qUtf8Printable(baudRate));
    parent->winId(); // a box over a window that has no handle yet may come up behind it
    auto* const box =
        new QMessageBox(QMessageBox::Information, translated(QT_TRANSLATE_NOOP("CMainWin", "提示")),
                        QStringLiteral("Com %1 %2 open failed").arg(port, baudRate), QMessageBox::Yes | QMessageBox::No,
                        parent, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowIcon(QIcon(QStringLiteral(":/vantor/Resource/app.png")));
    box->open();
}

namespace {

bool confirmEnd(QWidget* parent)
{
    QMessageBox box(QMessageBox::Warning, translated(QT_TRANSLATE_NOOP("CMainWin", "警告")),
                    translated(QT_TRANSLATE_NOOP("CMainWin", "本检测系统正在运行，您真的要关闭？")),
                    QMessageBox::Ok | QMessageBox::Cancel, parent);
    box.button(QMessageBox::Ok)->setText(translated(QT_TRANSLATE_NOOP("CMainWin", "确定")));
    box.button(QMessageBox::Cancel)->setText(translated(QT_TRANSLATE_NOOP("CMainWin", "取消")));
    box.setDefaultButton(QMessageBox::Cancel);
    box.setWindowIcon(QIcon(QStringLiteral(":/vantor/Resource/app.png")));
    return box.exec() == QMessageBox::Ok;
}

bool confirmLoss(QWidget* parent, const QStringList& models)
{
    QMessageBox box(
        QMessageBox::Warning, translated(QT_TRANSLATE_NOOP("CMainWin", "警告")),
        translated(QT_TRANSLATE_NOOP("CMainWin", "任务设计器中有未保存的更改，关闭后将丢失：\n%1\n仍要关闭？"))
            .arg(models.join(QLatin1Char('\n'))),
        QMessageBox::Ok | QMessageBox::Cancel, parent);
    box.button(QMessageBox::Ok)->setText(translated(QT_TRANSLATE_NOOP("CMainWin", "放弃更改并关闭")));
    box.button(QMessageBox::Cancel)->setText(translated(QT_TRANSLATE_NOOP("CMainWin", "取消")));
    box.setDefaultButton(QMessageBox::Cancel);
    box.setWindowIcon(QIcon(QStringLiteral(":/vantor/Resource/app.png")));
    return box.exec() == QMessageBox::Ok;
}

} // namespace

bool confirmClose(QWidget* parent, const QStringList& unsavedModels, bool byHand)
{
    if (HostChoice::isUnattended() && !byHand)
        return true;
    return confirmEnd(parent) && (unsavedModels.isEmpty() || confirmLoss(parent, unsavedModels));
}

} // namespace messages
