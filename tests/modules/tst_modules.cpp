#include "modules/DllLoader.h"
#include "modules/ModuleSet.h"
#include "platform/AppHome.h"
#include "support/Table.h"

#include <QtTest>

namespace {

QString fakes(const char* folder)
{
    return QStringLiteral(FAKES_DIR "/") + QLatin1String(folder);
}

QStringList protocol()
{
    return QCoreApplication::instance()->property("protocol").toStringList();
}

const IModules::CameraCallbacks nobody{
    [](const QString&, const QImage&) {}, [](const QString&, const QVariant&) {}, {}};

} // namespace

class ModulesTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QCoreApplication::instance()->setProperty("protocol", QStringList()); }

    void suffixIsNeverDoubled()
    {
        for (const char* base : {"dir/ksX", "dir/ksX.dll", "dir/ksX.DLL"}) {
            QCOMPARE(platform::moduleFile(base).count('.'), 1);
            QCOMPARE(platform::moduleLoadName(base), QStringLiteral("dir/ksX"));
        }
    }

    void firstDirectoryWithTheFileIsTaken()
    {
        const QStringList dirs{"/nowhere", fakes("good"), fakes("null") + '/'};
        DllLoader good("ksbengine", "Lib_Engine_Init", "Lib_Engine_Free", dirs);
        QVERIFY(good.fileName().startsWith(fakes("good")));
        DllLoader none("ksAbsent", "Lib_Engine_Init", "Lib_Engine_Free", dirs);
        QVERIFY(!none.isLoaded());
        QVERIFY(none.fileName().startsWith(fakes("null")));
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression("^fail to get Init Function in dll:.*ksAbsent"));
        QVERIFY(!none.instance());
    }

    void modulesStartAndStopInOrder()
    {
        {
            ModuleSet modules({fakes("good")});
            QCOMPARE(modules.start(nobody), QString());
            QVERIFY(modules.coreCtrl() && modules.engine() && modules.designer());
            QCOMPARE(modules.start(nobody), QString());
        }
        QCOMPARE(protocol(), QStringList({"core started", "request", "notification", "image", "engine initialised",
                                          "engine attached", "core stopped", "core deleted", "designer deleted",
                                          "engine deleted"}));
    }

    void wrongModuleEndsStartUpWithItsText_data()
    {
        Table::columns<QStringList, QString>();
        const QString core = QStringLiteral("Corectrl模块加载失败,请检查!");
        const QString engine = QStringLiteral("ksbengine模块加载失败,请检查!");
        const QString designer = QStringLiteral("ksdesigner模块加载失败,请检查!");
        QTest::newRow("all missing") << QStringList{"missing", "missing", "missing"} << core;
        QTest::newRow("no camera") << QStringList{"nocamera", "good", "good"}
                                   << QStringLiteral("camera.json文件出错,请检查!");
        for (const char* kind : {"null", "throws", "nosymbol", "startthrows", "otherinterface"}) {
            QTest::addRow("core %s", kind) << QStringList{kind, "good", "good"} << core;
            QTest::addRow("engine %s", kind) << QStringList{"good", kind, "good"} << engine;
            QTest::addRow("designer %s", kind) << QStringList{"good", "good", kind} << designer;
        }
    }
    void wrongModuleEndsStartUpWithItsText()
    {
        const auto [folders, fatal] = Table::row<QStringList, QString>();
        QTemporaryDir mixed;
        const QStringList names{"ksCoreCtrl", "ksbengine", "ksdesigner"};
        for (int i = 0; i < 3; ++i) {
            const QString file = platform::moduleFile(names[i]);
            QFile::copy(fakes(qPrintable(folders[i])) + '/' + file, mixed.filePath(file));
        }
        ModuleSet modules({mixed.path()});
        QCOMPARE(modules.start(nobody), fatal);
    }

    void reportNamesFileVersionAndReason_data()
    {
        Table::of<QString, QString>({{"right", "good", ""},
                                     {"no object", "null", "系统日志"},
                                     {"no symbol", "nosymbol", "Lib_CoreCtrl_Init"},
#ifdef Q_OS_UNIX
                                     {"what it calls is nowhere", "undefined", "functionOfNobody"},
#endif
                                     {"its version throws", "versionthrows", ""},
                                     {"other interface", "otherinterface", "接口版本 2.1"},
                                     {"no library", "missing", "ksCoreCtrl"}});
    }
    void reportNamesFileVersionAndReason()
    {
        const auto [folder, problem] = Table::row<QString, QString>();
        ModuleSet modules({fakes(qPrintable(folder))});
        modules.start(nobody);
        QVERIFY(!modules.createSerialPort() && !modules.createUserCtrl()); // optional ones may be missing
        const ModuleInfo user = modules.report().constLast();
        QVERIFY2(user.name == "QUserInfo" && user.problem.contains("QUserInfo"), qPrintable(user.problem));
        const ModuleInfo core = modules.report().value(0);
        QCOMPARE(core.name, QStringLiteral("ksCoreCtrl"));
        QCOMPARE(core.working, problem.isEmpty());
        QVERIFY(core.file.contains(folder));
        QVERIFY(folder != "otherinterface" || protocol().isEmpty()); // it is never called
        QVERIFY2(core.problem.contains(problem) && core.problem.isEmpty() == problem.isEmpty(),
                 qPrintable(core.problem));
        QCOMPARE(core.version, folder == "good" ? QStringLiteral("1.2 测试") : QString());
    }
};

QTEST_GUILESS_MAIN(ModulesTest)
#include "tst_modules.moc"
