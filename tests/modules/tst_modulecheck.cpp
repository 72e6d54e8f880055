#include "support/Table.h"

#include <QtTest>

class ModuleCheckTest : public QObject
{
    Q_OBJECT

private slots:
    void verdictNamesEveryFault_data()
    {
        const QString bin = QStringLiteral(VALVECELL_BIN_DIR "/");
        const QString fakes = QStringLiteral(FAKES_DIR "/");
        Table::of<QString, QStringList>(
            {{"bundled core control", bin + "ksCoreCtrl", {}},
             {"bundled engine", bin + "ksbengine", {}},
             {"bundled designer", bin + "ksdesigner", {}},
             {"bundled line", bin + "SerialPortTool", {}},
             {"bundled users", bin + "QUserInfo", {}},
             {"faulty core control",
              fakes + "faulty/ksCoreCtrl",
              {"life: cameraKeys() answers differently", "life: cameraKeys() names a camera twice",
               "triggers: setRequestCallback() throws: no requests here", "triggers: trigger() takes",
               "triggers: a null image is delivered for camera \"b\"", "triggers: an image of a camera \"b\"",
               "triggers: camera \"1\": 3 triggers, 0 images", "stop: the image callback is called after stop()",
               "strangers: an unknown camera is not reported", "strangers: extension() answers",
               "strangers: trigger() without callbacks throws"}},
             {"faulty engine",
              fakes + "faulty/ksbengine",
              {"taskList()->list() throws", "tasks: the result callback is called on the caller's thread",
               "tasks: task 1 is answered twice", "null image: a null image is not answered",
               "unknown solution: an unknown solution is answered with \"AlgoResult\"",
               "deletion: a result arrives after the engine was deleted"}},
             {"throwing", fakes + "throws/ksbengine", {"life: Lib_Engine_Init throws: no licence dongle"}},
             {"other interface", fakes + "otherinterface/ksdesigner", {"loading: "}},
             {"other Qt", fakes + "otherqt/ksbengine", {"loading: 模块用 Qt 6 编译"}},
             {"no module", bin + "libvalvecell", {"loading: no function of a module"}}});
    }
    void verdictNamesEveryFault()
    {
        const auto [file, faults] = Table::row<QString, QStringList>();
        QProcess check;
        check.start(QStringLiteral(VALVECELL_BIN_DIR "/modulecheck"), {"--json", file + ".so"});
        QVERIFY(check.waitForFinished(240000));
        const QByteArray said = check.readAllStandardOutput();
        QStringList found;
        for (const QJsonValue& fault : QJsonDocument::fromJson(said).object()["faults"].toArray())
            found << fault["check"].toString() + ": " + fault["text"].toString();
        for (const QString& fault : faults)
            QVERIFY2(!found.filter(fault).isEmpty(), qPrintable(fault + " is not in\n" + found.join('\n')));
        QVERIFY2(found.isEmpty() == faults.isEmpty(), said.constData());
        QCOMPARE(check.exitCode(), faults.isEmpty() ? 0 : 1);
    }
};

QTEST_GUILESS_MAIN(ModuleCheckTest)
#include "tst_modulecheck.moc"
