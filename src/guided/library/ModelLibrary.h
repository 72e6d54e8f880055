#pragma once

#include "common/AuditChange.h"
#include "common/Background.h"
#include "dialogs/models/ModelActions.h"

#include <QDialog>

class IEngine;
class InlineMessage;
class LibraryTable;
class ModelManager;
class PlcIndexTable;
class QLabel;
class QLineEdit;
class QPushButton;
class QSortFilterProxyModel;
class QTableView;
class ksGlobalConfig;

/// The library of models: searched, sorted, with what each did, and copied from station to station. Usable with many
/// hundreds of models: what the records say is read on a thread, and pictures only of rows on the screen. GUI thread.
class ModelLibrary : public QWidget
{
    Q_OBJECT

public:
    struct Parts
    {
        ModelManager& models;
        const PlcIndexTable& indices;
        IEngine* engine = nullptr; ///< may be null
        const ksGlobalConfig& config;
        QString home;
    };

    /// Days of records that are looked at.
    static constexpr int days = 90;

    explicit ModelLibrary(const Parts& parts, QWidget* parent = nullptr);

public slots:
    /// Reads models and records anew.
    void refresh();

signals:
    /// What was stored, with the names of QModelMangerUI::modelsChanged().
    void modelsChanged(const AuditChanges& changes);
    /// The guide is to be opened, for a new model or one of that name.
    void teachingWanted(const QString& name);
    /// The dialog that adds, changes and removes models is to be opened.
    void managerWanted();

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void build();
    void connectAll();
    void listModels();
    void readUses();
    void readPicture(const QString& model, qint64 part);
    void showChosen();
    QString chosen() const;
    /// Gives the station what the other one knows of the chosen model.
    void copyTo(int station);
    QString solution(int station) const;
    void retranslate();

    const Parts m_parts;
    ModelActions m_actions;
    LibraryTable* m_table;
    QSortFilterProxyModel* m_sorted;
    QLabel* m_caption;
    QLineEdit* m_search;
    QLabel* m_count;
    QTableView* m_view;
    InlineMessage* m_message;
    QPushButton* m_teach;
    QPushButton* m_copy[2];
    QPushButton* m_manage;
    QPushButton* m_refresh;
    Background m_background{Background::AtEnd::Abandon};
};

/// The library in a window of its own.
class ModelLibraryDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ModelLibraryDialog(const ModelLibrary::Parts& parts, QWidget* parent = nullptr);

    ModelLibrary& library() const { return *m_library; }

protected:
    void changeEvent(QEvent* event) override;

private:
    ModelLibrary* m_library;
};
