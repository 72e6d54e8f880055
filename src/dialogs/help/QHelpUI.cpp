#include "dialogs/help/QHelpUI.h"

#include "common/forms/DialogForm.h"
#include "ui_QHelpUI.h"

#include <QDir>
#include <QEvent>
#include <QScrollBar>
#include <QShortcut>

namespace {
constexpr int widestContents = 360;
constexpr int contentsRoom = 24; ///< beside the longest heading, for the frame and a scroll bar
} // namespace

QHelpUI::QHelpUI(const QString& folder, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::QHelpUI>())
    , m_folder(folder)
{
    m_ui->setupUi(this);
    DialogForm::prepare(this);
    m_ui->splitter->setStretchFactor(1, 1);
    m_ui->splitter->setSizes({240, width() - 240});
    connectAll();
    openGuide();
}

QHelpUI::~QHelpUI()
{
    DialogForm::takeDown(this);
}

void QHelpUI::connectAll()
{
    GuideView* page = m_ui->page;
    connect(page, &GuideView::pageShown, this, &QHelpUI::listHeadings);
    connect(page, &GuideView::backwardAvailable, m_ui->backButton, &QPushButton::setEnabled);
    connect(page->verticalScrollBar(), &QScrollBar::valueChanged, this, &QHelpUI::markHeading);
    connect(m_ui->backButton, &QPushButton::clicked, page, &GuideView::backward);
    connect(m_ui->contents, &QListWidget::itemActivated, this,
            [this](const QListWidgetItem* item) { m_ui->page->goTo(item->data(Qt::UserRole).toInt()); });
    connect(m_ui->contents, &QListWidget::itemClicked, m_ui->contents, &QListWidget::itemActivated);
    connect(m_ui->searchEdit, &QLineEdit::textChanged, this, &QHelpUI::search);
    connect(m_ui->searchEdit, &QLineEdit::returnPressed, this, [this] { step(1); });
    connect(m_ui->nextButton, &QPushButton::clicked, this, [this] { step(1); });
    connect(m_ui->previousButton, &QPushButton::clicked, this, [this] { step(-1); });
    connect(m_ui->assistantButton, &QPushButton::clicked, this, &QHelpUI::assistantWanted);
    connect(m_ui->closeButton, &QPushButton::clicked, this, &QHelpUI::reject);
    const auto* find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, m_ui->searchEdit, QOverload<>::of(&QWidget::setFocus));
}

void QHelpUI::openGuide()
{
    m_ui->backButton->setEnabled(false);
    //: The file name of the guide in this language.
    const QString name = tr("user-guide.zh-CN.md");
    if (!m_ui->page->open(QDir(m_folder).filePath(name)))
        m_ui->page->setPlainText(tr("没有找到手册：%1").arg(QDir(m_folder).filePath(name)));
}

void QHelpUI::listHeadings()
{
    m_ui->contents->clear();
    for (const GuideView::Heading& heading : m_ui->page->headings()) {
        const QString indent(4 * std::max(0, heading.level - 2), QLatin1Char(' '));
        auto* item = new QListWidgetItem(indent + heading.text, m_ui->contents);
        item->setData(Qt::UserRole, heading.position);
    }
    m_ui->contents->setMinimumWidth(qMin(widestContents, m_ui->contents->sizeHintForColumn(0) + contentsRoom));
    m_ui->splitter->refresh(); // or the wider list lies over the page
    search(m_ui->searchEdit->text());
    markHeading();
}

void QHelpUI::markHeading()
{
    m_ui->contents->setCurrentRow(m_ui->page->headingAtTop());
}

void QHelpUI::search(const QString& text)
{
    m_ui->page->search(text.trimmed());
    tellFound();
}

void QHelpUI::step(int by)
{
    m_ui->page->step(by);
    tellFound();
}

void QHelpUI::tellFound()
{
    const int found = m_ui->page->foundCount();
    const bool asked = !m_ui->searchEdit->text().trimmed().isEmpty();
    m_ui->foundLabel->setText(found > 0 ? QStringLiteral("%1 / %2").arg(m_ui->page->current()).arg(found)
                              : asked   ? tr("没有找到")
                                        : QString());
    m_ui->nextButton->setEnabled(found > 0);
    m_ui->previousButton->setEnabled(found > 0);
}

void QHelpUI::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        openGuide();
    }
    QDialog::changeEvent(event);
}
