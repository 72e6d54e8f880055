#include "dialogs/cameras/CameraFeaturesPage.h"

#include "common/forms/DialogForm.h"
#include "dialogs/cameras/CameraFeatureModel.h"
#include "dialogs/cameras/CameraNames.h"
#include "dialogs/cameras/FeatureEditor.h"
#include "ui_CameraFeaturesPage.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QSortFilterProxyModel>

namespace {
constexpr int nameWidth = 185;
constexpr int valueWidth = 100;
} // namespace

CameraFeaturesPage::CameraFeaturesPage(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::CameraFeaturesPage>())
    , m_model(new CameraFeatureModel(this))
    , m_filter(new QSortFilterProxyModel(this))
{
    m_ui->setupUi(this);
    m_filter->setSourceModel(m_model);
    m_filter->setRecursiveFilteringEnabled(true);
    m_filter->setFilterRole(CameraFeatureModel::FilterRole);
    m_filter->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_ui->tree->setModel(m_filter);
    m_ui->tree->setItemDelegate(new FeatureEditor(this));
    m_ui->tree->header()->resizeSection(CameraFeatureModel::Name, nameWidth);
    m_ui->tree->header()->resizeSection(CameraFeatureModel::Value, valueWidth);
    connect(m_ui->filterEdit, &QLineEdit::textChanged, this, &CameraFeaturesPage::filter);
    connect(m_ui->readButton, &QPushButton::clicked, this, &CameraFeaturesPage::read);
    connect(m_model, &CameraFeatureModel::writeWanted, this, &CameraFeaturesPage::write);
    connect(m_model, &CameraFeatureModel::dataChanged, this, &CameraFeaturesPage::showNote);
    connect(m_ui->tree->selectionModel(), &QItemSelectionModel::currentChanged, this, &CameraFeaturesPage::showNote);
}

CameraFeaturesPage::~CameraFeaturesPage() = default;

void CameraFeaturesPage::setCamera(ICameraFeatures* features, const QString& key)
{
    m_features = features;
    m_key = key;
}

void CameraFeaturesPage::showEvent(QShowEvent* event)
{
    if (!event->spontaneous())
        read();
    QWidget::showEvent(event);
}

/// Enter ends a field here; beyond it would press the dialog's OK.
void CameraFeaturesPage::keyPressEvent(QKeyEvent* event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    event->setAccepted(isEnter);
}

void CameraFeaturesPage::read()
{
    m_again = m_reading;
    if (m_reading || !m_features)
        return;
    m_reading = true;
    m_ui->readButton->setEnabled(false);
    m_features->readFeatures(
        m_key, [this, slot = m_mailbox.slot()](const QVector<CameraFeature>& features, const QString& error) {
            slot.post([this, features, error] { take(features, error); });
        });
}

void CameraFeaturesPage::take(const QVector<CameraFeature>& features, const QString& error)
{
    m_reading = false;
    m_ui->readButton->setEnabled(true);
    m_readError = error;
    const int before = m_model->rowCount();
    if (error.isEmpty())
        m_model->setFeatures(features); // or else what was read last stays
    if (before == 0)
        m_ui->tree->expandAll();
    showNote();
    if (m_again)
        read();
}

void CameraFeaturesPage::write(const CameraFeature& feature, const QVariant& value)
{
    m_features->writeFeature(m_key, feature.name, value,
                             [this, slot = m_mailbox.slot(), feature, value](const QString& error) {
                                 slot.post([=] { finish(feature, value, error); });
                             });
}

void CameraFeaturesPage::finish(const CameraFeature& feature, const QVariant& value, const QString& error)
{
    m_model->finishWriting(feature.name, error);
    if (error.isEmpty())
        emit featureWritten(CameraAudit::feature(m_key, feature, value));
    read(); // others may follow the one, and the camera may have rounded it
}

void CameraFeaturesPage::filter(const QString& typed)
{
    m_filter->setFilterFixedString(typed.trimmed());
    m_ui->tree->expandAll();
}

void CameraFeaturesPage::showNote()
{
    const QModelIndex chosen = m_filter->mapToSource(m_ui->tree->currentIndex());
    if (m_model->hasError(chosen))
        m_ui->note->say(Tone::Error, m_model->note(chosen));
    else if (!m_readError.isEmpty())
        m_ui->note->say(Tone::Error, tr("读不到相机功能：%1").arg(m_readError));
    else
        m_ui->note->say(Tone::Plain, m_model->note(chosen));
}

void CameraFeaturesPage::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        emit m_model->headerDataChanged(Qt::Horizontal, 0, CameraFeatureModel::columns - 1);
        showNote();
        if (isVisible())
            read(); // the module's texts
    }
    QWidget::changeEvent(event);
}
