#include "support/Table.h"

#include <QtTest>

class ModuleCheckTest : public QObject
{
    Q_OBJECT

private slots:
    /// Two virtual cameras and two solutions.
    void initTestCase()
    {
        QDir(m_home.path()).mkpath("user/solutions/1");
        QDir(m_home.path()).mkpath("user/solutions/2");
        QImage picture(640, 480, QImage::Format_Grayscale8);
        picture.fill(90);
        QVERIFY(picture.save(m_home.filePath("1.png")));
        write("user/camera.json", R"({"cameras": [
            {"key": "cam1", "type": 100, "folder": "", "exposure_ms": 5, "transfer_ms": 5},
            {"key": "cam2", "type": 100, "folder": "", "exposure_ms": 5, "transfer_ms": 5}]})");
        write("user/solutions/1/solution.json", R"({"name": "1", "result": "hole"})");
        write("user/solutions/2/solution.json", R"({"name": "2", "result": "hub"})");
    }

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
              {"life: cameraKeys() answers differently",
               "life: cameraKeys() names a camera twice",
               "life: cameraKeys() of a second instance",
               "life: 2 threads more run after two further instances",
               "life: the process's working directory",
               "life: the process's locale",
               "life: the process's message handler",
               "triggers: setRequestCallback() throws: no requests here",
               "triggers: trigger() takes",
               "triggers: a null image is delivered for camera \"b\"",
               "triggers: an image of a camera \"b\"",
               "triggers: camera \"1\": 3 triggers, 0 images",
               "triggers: an image of camera \"a\" is changed",
               "stop: the image callback is called after stop()",
               "strangers: an unknown camera is not reported",
               "strangers: extension() answers",
               "strangers: trigger() without callbacks throws",
               "threads: camera \"a\": 3 triggers on a thread of its own, 0",
               "captures: camera \"1\": 2 captures are not answered",
               "captures: a capture of camera \"a\" is answered for camera \"b\"",
               "captures: a capture of camera \"a\" is answered twice",
               "captures: a capture of camera \"a\" is answered with neither",
               "captures: a number is answered that nobody asked for",
               "captures: a capture of an unknown camera is answered with an image",
               "captures: camera \"nobody's\": 1 captures are not answered",
               "captures: the image callback hears",
               "settings: status() of an unknown camera",
               "settings: applySettings() takes settings of an unknown",
               "settings: applySettings() takes nonsense for \"exposure_ms\"",
               "settings: applySettings() refuses nonsense for \"gain_db\" without a sentence",
               "settings: nonsense for \"gain_db\" changes",
               "previews: preview() says that it captures with an unknown",
               "previews: a preview of camera \"a\" has neither",
               "previews: a preview of camera \"a\" has both",
               "previews: camera \"a\": 3 previews are granted, 6 come",
               "previews: the image callback is called"}},
             {"faulty engine",
              fakes + "faulty/ksbengine",
              {"taskList()->list() throws", "tasks: the result callback is called on the caller's thread",
               "tasks: a task is answered twice", "tasks: a result names solution \"\"",
               "tasks: \"AlgoResult\" has no \"angle\"", "tasks: the image of a task is changed",
               "odd images: a null image is not answered", "odd images: crashes in runTask()",
               "unknown solution: an unknown solution is answered with \"AlgoResult\"",
               "deletion: the result callback is called after the engine was deleted",
               "threads: 5 tasks on a thread of its own, 0 answers"}},
             {"faulty designer",
              fakes + "faulty/ksdesigner",
              {"life: openDesigner() returns only when", "life: openDesigner() opens a second window",
               "life: its window stays", "life: the process's style sheet", "life: the process's cursor",
               "parent: openDesigner() after its window's parent is gone returns only",
               "pictures: unsaved() names something", "pictures: hideDesigner() leaves a window"}},
             {"faulty line",
              fakes + "faulty/SerialPortTool",
              {"line: open() says that a port is open", "line: a frame is received while the port is not open",
               "frames: frames are received on more than one thread", "frames: a frame comes back as another",
               "frames: status() of an open line", "sessions: send() with a session writes a frame of another",
               "sessions: sendUrgent() writes a frame of another", "sessions: session() of a closed line is not 0",
               "sessions: session() is the same", "ports: reopen() takes a baud rate", "ports: a refused reopen() cuts",
               "ports: problemOf() takes an empty name"}},
             {"faulty users",
              fakes + "faulty/QUserInfo",
              {"users: state() is 7", "users: nobody is logged in, and currentUserName() is \"boss\"",
               "users: sgCurrentUserInfo() tells of another user", "users: sgCurrentUserInfo() tells level 9",
               "contradict each other", "users: logOut() does not tell", "users: logOut() tells of a change",
               "users: a window stays"}},
             {"throwing", fakes + "throws/ksbengine", {"life: Lib_Engine_Init throws: no licence dongle"}},
             {"other interface", fakes + "otherinterface/ksdesigner", {"loading: "}},
             {"other Qt", fakes + "otherqt/ksbengine", {"loading: 模块用 Qt 6 编译"}},
             {"no module", bin + "libvalvecell", {"loading: no function of a module"}}});
    }
    void verdictNamesEveryFault()
    {
        const auto [file, faults] = Table::row<QString, QStringList>();
        QProcess check;
        check.start(QStringLiteral(VALVECELL_BIN_DIR "/modulecheck"),
                    {"--json", "--home", m_home.path(), file + ".so"});
        QVERIFY(check.waitForFinished(600000));
        const QByteArray said = check.readAllStandardOutput();
        QStringList found;
        for (const QJsonValue& fault : QJsonDocument::fromJson(said).object()["faults"].toArray())
            found << fault["check"].toString() + ": " + fault["text"].toString();
        for (const QString& fault : faults)
            QVERIFY2(!found.filter(fault).isEmpty(), qPrintable(fault + " is not in\n" + found.join('\n')));
        QVERIFY2(found.isEmpty() == faults.isEmpty(), said.constData());
        QCOMPARE(check.exitCode(), faults.isEmpty() ? 0 : 1);
    }

private:
    void write(const char* name, QByteArray text)
    {
        QFile file(m_home.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) &&
                file.write(text.replace("\"\"", '"' + m_home.path().toUtf8() + '"')));
    }

    QTemporaryDir m_home;
};

QTEST_GUILESS_MAIN(ModuleCheckTest)
#include "tst_modulecheck.moc"
