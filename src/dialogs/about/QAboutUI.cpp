#include "dialogs/about/QAboutUI.h"

#include "common/forms/DialogForm.h"
#include "dialogs/about/ProgramPart.h"
#include "ui_QAboutUI.h"

#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QFile>
#include <QSysInfo>

namespace {

QString ownLicence()
{
    QFile file(QStringLiteral(":/text/LICENSE"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

QAboutUI::QAboutUI(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::QAboutUI>())
{
    m_ui->setupUi(this);
    DialogForm::prepare(this);
    m_ui->table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_ui->table->horizontalHeader()->setStretchLastSection(true);
    m_ui->licenceText->setPlainText(ownLicence());
    connect(m_ui->copyButton, &QPushButton::clicked, this, &QAboutUI::copyVersions);
    connect(m_ui->closeButton, &QPushButton::clicked, this, &QAboutUI::reject);
    fill();
}

QAboutUI::~QAboutUI()
{
    DialogForm::takeDown(this);
}

void QAboutUI::fill()
{
    const QVector<ProgramPart> parts = programParts();
    m_ui->versionLabel->setText(tr("版本 %1").arg(parts.first().version));
    m_ui->systemLabel->setText(
        QStringLiteral("%1, %2").arg(QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture()));
    m_ui->table->setRowCount(parts.size());
    for (int row = 0; row < parts.size(); ++row) {
        const ProgramPart& part = parts[row];
        int column = 0;
        for (const QString& cell : {part.name, part.version, part.purpose, part.licence, part.source})
            m_ui->table->setItem(row, column++, new QTableWidgetItem(cell));
    }
}

/// For a message to those who help.
void QAboutUI::copyVersions()
{
    QStringList lines{m_ui->systemLabel->text()};
    for (const ProgramPart& part : programParts())
        lines << QStringLiteral("%1 %2").arg(part.name, part.version).trimmed();
    QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void QAboutUI::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        fill();
    }
    QDialog::changeEvent(event);
}
