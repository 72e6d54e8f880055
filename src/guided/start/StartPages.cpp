#include "guided/start/StartPages.h"

#include "common/FingerSize.h"
#include "config/ksSysConfig.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
}

QLabel* StartPage::addText(QVBoxLayout* rows, const char* name)
{
    auto* label = new QLabel(this);
    label->setObjectName(QLatin1String(name));
    label->setWordWrap(true);
    rows->addWidget(label);
    return label;
}

QListWidget* StartPage::addList(QVBoxLayout* rows, const char* name)
{
    auto* list = new QListWidget(this);
    list->setObjectName(QLatin1String(name));
    list->setMinimumHeight(2 * fingerSize);
    list->setStyleSheet(QStringLiteral("QListWidget::item { min-height: %1px; }").arg(fingerSize));
    rows->addWidget(list, 1);
    return list;
}

QPushButton* StartPage::addButton(QBoxLayout* rows, const char* name)
{
    auto* button = new QPushButton(this);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    rows->addWidget(button);
    return button;
}

void StartPage::note(const QString& text)
{
    m_note = text;
    emit changed();
}

LanguagePage::LanguagePage(ksSysConfig& settings, const QMap<QString, QString>& languages)
    : m_settings(settings)
{
    auto* rows = new QVBoxLayout(this);
    m_list = addList(rows, "languageList");
    for (auto it = languages.begin(); it != languages.end(); ++it) {
        auto* item = new QListWidgetItem(it.value(), m_list);
        item->setData(Qt::UserRole, it.key());
        if (it.key() == settings.language)
            m_list->setCurrentItem(item);
    }
    connect(m_list, &QListWidget::currentRowChanged, this, &LanguagePage::choose);
}

QString LanguagePage::hint() const
{
    return tr("请选择程序的语言。每一步都可以跳过；以后可在“帮助”窗口重新打开本向导。");
}

void LanguagePage::choose(int row)
{
    const QString before = m_settings.language;
    const QString wanted = row < 0 ? before : m_list->item(row)->data(Qt::UserRole).toString();
    if (wanted == before)
        return;
    m_settings.language = wanted;
    m_settings.save();
    emit settingsApplied({{QStringLiteral("language/select"), before, wanted}});
}

ToolPage::ToolPage(std::function<Texts()> texts)
    : m_texts(std::move(texts))
{
    auto* rows = new QVBoxLayout(this);
    m_state = addText(rows, "stateLabel");
    m_button = addButton(rows, "toolButton");
    rows->addStretch(1);
    connect(m_button, &QPushButton::clicked, this, &ToolPage::toolWanted);
}

void ToolPage::retranslate()
{
    m_state->setText(m_texts().state);
    m_button->setText(m_texts().button);
}
