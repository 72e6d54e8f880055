#include "dialogs/DialogDriver.h"
#include "dialogs/backup/QBackupUI.h"
#include "home/Restore.h"
#include "support/TempHome.h"

#include <QCheckBox>
#include <QPushButton>

class BackupDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void chosenPartsAreBackedUpAndLaidReadyUntilTheyAreDiscarded()
    {
        const TempHome home;
        home.write("/user/systemConfig.ini", "settings");
        home.write("/DBFiles/Images/a.jpg", "picture");
        const QString file = home.path("/../备份.vcbackup");
        QBackupUI dialog(home.path());
        QSignalSpy done(&dialog, &QBackupUI::done);
        const auto* message = dialog.findChild<QLabel*>("message");
        const auto button = [&](const char* name) { return dialog.findChild<QPushButton*>(name); };
        dialog.show();
        QVERIFY(button("backupButton")->isEnabled() && !button("dropButton")->isVisible());

        dialog.backUp(file);
        QVERIFY(!button("backupButton")->isEnabled() && button("stopButton")->isVisible());
        QTRY_COMPARE(done.size(), 1);
        QCOMPARE(Backup::look(file).manifest.files.size(), 1); // pictures are for those who ask for them
        home.write("/user/systemConfig.ini", "others");
        dialog.prepareRestore(file);
        QTRY_COMPARE(done.size(), 2);
        QVERIFY(Restore::isPending(home.path()) && button("dropButton")->isVisible());
        QCOMPARE(home.read("/user/systemConfig.ini"), QByteArray("others"));
        const DialogDriver look(dialog);
        look.shoot("backup");
        QCOMPARE(look.clipped(), QStringList());
        {
            const English english;
            QEvent language(QEvent::LanguageChange);
            QCoreApplication::sendEvent(&dialog, &language);
            QCOMPARE(look.chinese(), QStringList());
            QTRY_COMPARE(look.clipped(), QStringList());
            look.shoot("backup_en");
        }
        button("dropButton")->click();
        QVERIFY(!Restore::isPending(home.path()) && !button("dropButton")->isVisible());

        home.write("/noise", "no backup");
        dialog.prepareRestore(home.path("/noise"));
        QTRY_VERIFY2(message->text().contains("noise"), qPrintable(message->text()));
        for (auto* part : dialog.findChildren<QCheckBox*>())
            part->setChecked(false);
        QVERIFY(!button("backupButton")->isEnabled() && !button("restoreButton")->isEnabled());
    }
};

QTEST_MAIN(BackupDialogTest)
#include "tst_backup.moc"
