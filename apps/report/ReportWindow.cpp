#include "ReportWindow.h"

#include "RecentHomes.h"
#include "common/forms/DialogForm.h"
#include "look/keyboard/ScreenKeyboard.h"
#include "results/ResultsView.h"

#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QMenu>
#include <QPushButton>
#include <QTabBar>

namespace {

QString homeOf(const QString& folder)
{
    const QDir chosen(folder);
    const bool below = chosen.dirName().compare(QLatin1String("DBFiles"), Qt::CaseInsensitive) == 0;
    return QDir::cleanPath(chosen.absoluteFilePath(below ? QStringLiteral("..") : QStringLiteral(".")));
}

} // namespace

ReportWindow::ReportWindow(QWidget* parent)
    : QMainWindow(parent)
    , m_view(new ResultsView(this))
    , m_homes(new QMenu(this))
    , m_open(new QPushButton(this))
{
    setCentralWidget(m_view);
    m_view->setCornerWidget(m_open, Qt::TopLeftCorner);
    m_open->setMenu(m_homes);
    connect(m_homes, &QMenu::aboutToShow, this, &ReportWindow::listHomes);
    m_view->setUser([] {
        const QString windows = qEnvironmentVariable("USERNAME");
        return windows.isEmpty() ? qEnvironmentVariable("USER") : windows;
    });
    new ScreenKeyboard(this);
    DialogForm::prepareFields(this);
    resize(ResultsView::usualSize());
    retranslate();
}

ReportWindow::~ReportWindow()
{
    DialogForm::takeDown(this);
}

void ReportWindow::openHome(const QString& folder)
{
    m_view->setHome(homeOf(folder));
    RecentHomes::opened(m_view->home());
    retranslate();
}

void ReportWindow::listHomes()
{
    m_homes->clear();
    const QStringList homes = RecentHomes::list();
    for (const QString& home : homes) {
        QAction* action =
            m_homes->addAction(QDir::toNativeSeparators(home).replace(QLatin1Char('&'), QLatin1String("&&")));
        action->setCheckable(true);
        action->setChecked(home == m_view->home());
        connect(action, &QAction::triggered, this, [this, home] { openHome(home); });
    }
    m_homes->addSeparator();
    connect(m_homes->addAction(tr("选择文件夹…")), &QAction::triggered, this, &ReportWindow::askForFolder);
}

void ReportWindow::askForFolder()
{
    auto* dialog = new QFileDialog(this, tr("选择工作目录（其中有 DBFiles 文件夹）"), m_view->home());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this, &ReportWindow::openHome);
    dialog->open();
}

void ReportWindow::retranslate()
{
    setWindowTitle(tr("检测报表 – %1").arg(QDir::toNativeSeparators(m_view->home())));
    m_open->setText(tr("打开工作目录"));
}

void ReportWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
