#pragma once

#include "common/Background.h"
#include "common/TaskResult.h"
#include "guided/stepper/GuidePage.h"
#include "guided/teaching/TeachingDraft.h"

class IEngine;
class IModelTrial;
class ModelActions;
class ModelManager;
class NumberField;
class PictureDesk;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTableWidget;

/// What the model is called, and the picture it is taught from.
class NamePage : public GuidePage
{
    Q_OBJECT

public:
    NamePage(TeachingDraft& draft, const ModelManager& models, PictureDesk& desk);

    QString title() const override { return tr("名称与图像"); }
    QString hint() const override;
    QString problem() const override;
    QString warning() const override;
    void enter() override;
    void retranslate() override;

    /// The fields as the draft has them; whether there is a camera to take a picture with, and a second station.
    void begin(bool canCapture, bool onlyOne);
    void setCanCapture(bool canCapture);

signals:
    void captureWanted();
    void fileWanted();
    void archiveWanted();
    void stationChosen(int station);

private:
    void take();
    bool isKnown() const;

    TeachingDraft& m_draft;
    const ModelManager& m_models;
    QLabel* m_nameCaption;
    QLineEdit* m_name;
    QLabel* m_indexCaption;
    NumberField* m_index;
    QLabel* m_stationCaption;
    QComboBox* m_stations;
    QPushButton* m_capture;
    QPushButton* m_archive;
    QPushButton* m_file;
    QLabel* m_source;
    QString m_failure;
    bool m_canCapture = false;
};

/// What the engine proposes; a click says where the centre is, another where the hole is.
class ProposalPage : public GuidePage
{
    Q_OBJECT

public:
    explicit ProposalPage(TeachingDraft& draft);

    QString title() const override { return tr("建议"); }
    QString hint() const override;
    QString problem() const override;
    void enter() override;
    void retranslate() override;

    /// Somebody clicked in the picture; the next click then means the other one.
    void point(const QPointF& pixel);
    /// The proposal changed.
    void showProposal();

signals:
    /// The hints changed.
    void proposalWanted();

private:
    TeachingDraft& m_draft;
    QRadioButton* m_center;
    QRadioButton* m_hole;
    QPushButton* m_again;
    QLabel* m_facts;
};

/// How the model answers the last pictures of the archive, and which stations get it.
class CheckPage : public GuidePage
{
    Q_OBJECT

public:
    /// `trial` may be null: then nothing is tried.
    CheckPage(TeachingDraft& draft, IModelTrial* trial, QString home);

    QString title() const override { return tr("检查与保存"); }
    QString hint() const override;
    QString problem() const override;
    QString warning() const override;
    void enter() override;
    void leave() override;
    void retranslate() override;

    /// The solutions of stations 1 and 2; empty where a station has none.
    void setSolutions(const QStringList& solutions);

signals:
    /// A row was chosen: its picture and what was found in it.
    void pictureChosen(const QImage& picture, const TaskResult& result);

private:
    struct Try
    {
        QString path;
        QImage picture;
        TaskResult result;
        bool answered = false;
    };

    void run(const QStringList& paths, quint64 round);
    void readNext(quint64 round);
    void showTry(int row);
    void takeBoxes();

    TeachingDraft& m_draft;
    IModelTrial* m_trial;
    const QString m_home;
    QStringList m_solutions;
    QCheckBox* m_boxes[2];
    QTableWidget* m_table;
    QLabel* m_summary;
    QVector<Try> m_tries;
    quint64 m_round = 0; ///< answers of earlier ones are dropped
    int m_read = 0;
    Mailbox m_mailbox;
    Background m_background{Background::AtEnd::Abandon};
};
