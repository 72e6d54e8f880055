#pragma once

#include "common/AuditChange.h"
#include "common/Scheduler.h"
#include "guided/stepper/GuideDialog.h"

#include <QMap>

class ICoreCtrl;
class ISerialPort;
class ModelManager;
class QCheckBox;
class ksGlobalConfig;
class ksSysConfig;

/// The assistant of the first start: language, cameras, the PLC's port, first model, first calibration. Each step can
/// be passed by, and it can be opened again at any time. GUI thread.
class FirstStart : public GuideDialog
{
    Q_OBJECT

public:
    struct Parts
    {
        ksSysConfig& settings;
        ksGlobalConfig& config;
        ICoreCtrl* core = nullptr; ///< may be null, as the next ones
        ISerialPort* port = nullptr;
        ModelManager* models = nullptr;
        QMap<QString, QString> languages; ///< captions by name
        QString home;
        Scheduler& scheduler;
    };

    explicit FirstStart(const Parts& parts, QWidget* parent = nullptr);

    /// Whether a person sits in front of the screen, the cell lacks cameras or models, and nobody said that the
    /// assistant is not wanted.
    static bool isWanted(const Parts& parts);
    /// Whether there is a screen at all.
    static bool isAttended();

signals:
    /// Settings hold new values; names are the keys of their files.
    void settingsApplied(const AuditChanges& changes);
    /// What a step leads to: the object name of an action of the window.
    void actionWanted(const QString& name);
    void teachingWanted();
    void calibrationWanted();

protected:
    QString finishText() const override { return tr("完成(&D)"); }
    QString windowText() const override { return tr("首次使用向导"); }
    void finish() override { accept(); }
    void retranslate() override;
    void changeEvent(QEvent* event) override;

private:
    void addPages();
    QString calibrationState(int station) const;

    const Parts m_parts;
    QCheckBox* m_never;
};
