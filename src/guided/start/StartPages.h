#pragma once

#include "common/AuditChange.h"
#include "common/Background.h"
#include "guided/start/PortSearch.h"
#include "guided/stepper/GuidePage.h"

#include <valvecell/ICameraDiscovery.h>

#include <QMap>
#include <QTimer>

class ICoreCtrl;
class ISerialPort;
class QBoxLayout;
class QLabel;
class QListWidget;
class QPushButton;
class QVBoxLayout;
class ksGlobalConfig;
class ksSysConfig;

/// A page of the assistant: each may be passed by.
class StartPage : public GuidePage
{
    Q_OBJECT

public:
    QString warning() const override { return m_note; }

signals:
    /// Settings hold new values; names are the keys of their files.
    void settingsApplied(const AuditChanges& changes);

protected:
    QLabel* addText(QVBoxLayout* rows, const char* name);
    QListWidget* addList(QVBoxLayout* rows, const char* name);
    QPushButton* addButton(QBoxLayout* rows, const char* name);
    void note(const QString& text);

private:
    QString m_note;
};

/// In which language the program speaks.
class LanguagePage : public StartPage
{
    Q_OBJECT

public:
    LanguagePage(ksSysConfig& settings, const QMap<QString, QString>& languages);

    QString title() const override { return tr("语言"); }
    QString hint() const override;
    void retranslate() override {}

private:
    void choose(int row);

    ksSysConfig& m_settings;
    QListWidget* m_list;
};

/// Which cameras there are; one that was found is taken over for a station with a click.
class CamerasPage : public StartPage
{
    Q_OBJECT

public:
    /// `core` may be null.
    CamerasPage(ICoreCtrl* core, ksGlobalConfig& config);

    QString title() const override { return tr("相机"); }
    QString hint() const override;
    void enter() override;
    void leave() override { m_poll.stop(); }
    void retranslate() override;

signals:
    void camerasWanted();

private:
    void look();
    void list();
    void takeFor(int station);
    QString freeKey() const;

    ICoreCtrl* m_core;
    ksGlobalConfig& m_config;
    QLabel* m_state;
    QListWidget* m_list;
    QPushButton* m_take[2];
    QPushButton* m_look;
    QPushButton* m_manage;
    QVector<FoundCamera> m_found;
    QTimer m_poll;
};

/// At which port the PLC is.
class PortPage : public StartPage
{
    Q_OBJECT

public:
    /// `port` may be null.
    PortPage(ISerialPort* port, ksSysConfig& settings, Scheduler& scheduler);

    QString title() const override { return tr("串口"); }
    QString hint() const override;
    void enter() override;
    void leave() override;
    void retranslate() override;

private:
    void list();
    void open(const QString& port);
    void useChosen();
    void keep(const QString& port);
    bool isOpen() const;

    ISerialPort* m_port;
    ksSysConfig& m_settings;
    QString m_stored; ///< what was set when the page was shown
    QLabel* m_state;
    QListWidget* m_list;
    QPushButton* m_search;
    QPushButton* m_use;
    PortSearch m_ports;
    Background m_background{Background::AtEnd::Abandon};
};

/// Something that has a guide of its own.
class ToolPage : public StartPage
{
    Q_OBJECT

public:
    struct Texts
    {
        QString title;
        QString hint;
        QString button;
        QString state; ///< how it is now
    };

    explicit ToolPage(std::function<Texts()> texts);

    QString title() const override { return m_texts().title; }
    QString hint() const override { return m_texts().hint; }
    void enter() override { retranslate(); }
    void retranslate() override;

signals:
    void toolWanted();

private:
    std::function<Texts()> m_texts;
    QLabel* m_state;
    QPushButton* m_button;
};
