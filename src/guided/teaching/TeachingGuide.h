#pragma once

#include "common/AuditChange.h"
#include "common/Background.h"
#include "dialogs/models/ModelActions.h"
#include "guided/stepper/GuideDialog.h"
#include "guided/teaching/TeachingDraft.h"

class CheckPage;
class ICoreCtrl;
class IEngine;
class IModelExamples;
class IModelProposer;
class ModelManager;
class NamePage;
class PictureDesk;
class ProposalPage;
class QPushButton;
class TeachingPicture;
class ksGlobalConfig;

/// Leads through the teaching of a model: name, index and a picture; the engine's proposal, which two clicks correct;
/// the last pictures of the archive, and the stations that get it. With an engine that proposes nothing it says so and
/// leads to the designer. GUI thread; the engine computes on workers.
class TeachingGuide : public GuideDialog
{
    Q_OBJECT

public:
    struct Parts
    {
        ModelManager& models;
        IEngine* engine = nullptr; ///< may be null, as the next one
        ICoreCtrl* core = nullptr;
        const ksGlobalConfig& config;
        QString home;
    };

    explicit TeachingGuide(const Parts& parts, QWidget* parent = nullptr);
    ~TeachingGuide() override;

    /// Starts over; `name` is a model that is there and to be taught, or empty for a new one.
    void beginModel(const QString& name);
    /// The form for a cell with one station.
    void setOneStation(bool one) { m_oneStation = one; }

signals:
    /// What was stored, with the names of QModelMangerUI::modelsChanged().
    void modelsChanged(const AuditChanges& changes);
    /// The engine proposes nothing; its designer is to be opened.
    void designerWanted();

protected:
    QString finishText() const override { return tr("保存(&S)"); }
    QString windowText() const override { return tr("引导示教"); }
    void finish() override;
    void retranslate() override;

private:
    struct Answer
    {
        IModelProposer::Proposal proposal;
        QVariantMap example;
    };

    void connectPages();
    void takePicture(const QImage& picture, const QString& name);
    void takeLatest();
    void propose();
    void showProposal();
    /// Gives the stored model the hole it was taught from, where the engine keeps examples.
    void addExample();
    QString cameraKey() const;

    const Parts m_parts;
    ModelActions m_actions;
    IModelProposer* m_proposer;
    IModelExamples* m_examples;
    TeachingDraft m_draft;
    TeachingPicture* m_picture;
    PictureDesk* m_desk;
    NamePage* m_namePage;
    ProposalPage* m_proposalPage;
    CheckPage* m_checkPage;
    QPushButton* m_designer;
    bool m_oneStation = false;
    quint64 m_round = 0; ///< proposals of earlier ones are dropped
    Background m_background{Background::AtEnd::Wait};
};
