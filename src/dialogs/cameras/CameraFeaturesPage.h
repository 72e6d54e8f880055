#pragma once

#include "common/AuditChange.h"
#include "common/Background.h"

#include <valvecell/ICameraFeatures.h>

#include <QWidget>

#include <memory>

class CameraFeatureModel;
class QSortFilterProxyModel;

namespace Ui {
class CameraFeaturesPage;
}

/// All that a camera can do, as it says itself, to be looked through and changed. Each change is written at once; a
/// camera that refuses keeps its value, and the reason stands at the field. GUI thread.
class CameraFeaturesPage : public QWidget
{
    Q_OBJECT

public:
    explicit CameraFeaturesPage(QWidget* parent = nullptr);
    ~CameraFeaturesPage() override;

    /// Which camera's; `features` outlives the page.
    void setCamera(ICameraFeatures* features, const QString& key);

public slots:
    /// Asks the camera anew.
    void read();

signals:
    /// The camera took a value; names as CameraAudit gives them.
    void featureWritten(const AuditChanges& changes);

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void take(const QVector<CameraFeature>& features, const QString& error);
    void write(const CameraFeature& feature, const QVariant& value);
    void finish(const CameraFeature& feature, const QVariant& value, const QString& error);
    void filter(const QString& typed);
    void showNote();

    std::unique_ptr<Ui::CameraFeaturesPage> m_ui;
    ICameraFeatures* m_features = nullptr;
    QString m_key;
    CameraFeatureModel* m_model;
    QSortFilterProxyModel* m_filter;
    bool m_reading = false;
    bool m_again = false; ///< something was written while the features were read
    QString m_readError;
    Mailbox m_mailbox; ///< of answers from the camera's threads
};
