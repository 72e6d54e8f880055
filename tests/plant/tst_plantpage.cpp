// The page as a browser shows it, of a plant that runs: broker, database, cells and collector are the real ones.

#include "Browser.h"
#include "PlantServers.h"
#include "db/Database.h"
#include "http/Accounts.h"

#include <pqxx/pqxx>

class PlantPageTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString chromium = QStandardPaths::findExecutable("chromium");
        if (!m_database.runs() || brokerProgram().isEmpty() || chromium.isEmpty())
            QSKIP("PostgreSQL, Mosquitto or Chromium is not installed");
        const QString port = QString::number(freePort());
        m_broker.start(brokerProgram(), {"-p", port});
        Database database(m_database.address().toStdString());
        database.bringUp();
        Accounts::add(database, "viewer", "seeing is enough", false);
        m_cells.start(VALVECELL_BIN_DIR "/plantsim",
                      {"--cells", "8", "--rate", "4", "--port", port, "--file", m_folder.filePath("cells.db")});
        m_collector.start(VALVECELL_BIN_DIR "/valvecell-plant", {"--database", m_database.address(), "--broker",
                                                                 "127.0.0.1:" + port, "--listen", "127.0.0.1:0"});
        QTRY_VERIFY(m_collector.canReadLine() || !m_collector.waitForReadyRead(50));
        QTRY_VERIFY(m_collector.bytesAvailable() > 0);
        m_page = QString::fromUtf8(m_collector.readAll()).section(' ', -1).trimmed();
        m_browser = std::make_unique<Browser>(chromium);
    }

    void nobodySeesAnythingWithoutLogIn()
    {
        m_browser->open(m_page);
        QTRY_VERIFY(has("form.login"));
        for (const char* path : {"cells", "cells/1/parts", "live", "faults", "pictures/1/1", "aside/1"})
            QCOMPARE(m_browser->value(QStringLiteral("fetch('/api/%1').then(a => a.status)").arg(path)).toInt(), 401);
        enter("wrong password");
        QTRY_VERIFY(has(".problem:not(:empty)"));
        enter("seeing is enough");
        QTRY_COMPARE(m_browser->value("document.querySelectorAll('.tile').length").toInt(), 8);
        QCOMPARE(m_browser->value("fetch('/api/aside/1').then(a => a.status)").toInt(), 403);
        QCOMPARE(m_browser->value("fetch('/api/cells/1/parts?before=rubbish').then(a => a.status)").toInt(), 400);
    }

    void partsArriveByThemselves()
    {
        const QString count = "Number(document.querySelector('.tile .count').textContent.replace(/\\D/g, ''))";
        const int before = m_browser->value(count).toInt();
        QTRY_VERIFY(m_browser->value(count).toInt() > before + 3);
    }

    void pagesAreFilledInBothLanguagesAndSizes()
    {
        const QPair<const char*, const char*> pages[] = {{"#/", ".tile"},           {"#/cell/1", "tbody tr"},
                                                         {"#/compare", "tbody tr"}, {"#/drift", ".drift"},
                                                         {"#/shift", "tbody tr"},   {"#/faults", ".card"}};
        for (const char* language : {"zh", "en"})
            for (const int width : {1920, 390}) {
                m_browser->resize(width, width == 390 ? 844 : 1080);
                for (const auto& [place, content] : pages) {
                    m_browser->open(m_page + "/?lang=" + language + "&w=" + QString::number(width) + place);
                    QTRY_VERIFY2(has(content), place);
                    QVERIFY2(m_browser->value("document.documentElement.scrollWidth <= innerWidth").toBool(), place);
                    // What cells say is in their language; the page's own words are in headings, buttons and menus.
                    const QString words = m_browser
                                              ->value("[...document.querySelectorAll('h1, h2, th, nav a, option, "
                                                      "button:not(#tongue), label, .item span:first-child')]"
                                                      ".map(e => e.textContent).join(' ')")
                                              .toString();
                    QCOMPARE(words.contains(QRegularExpression("\\p{Han}")), *language == 'z');
                }
            }
    }

    void metricsAreServed()
    {
        const auto text = [&] { return m_browser->value("fetch('/metrics').then(a => a.text())").toString(); };
        QTRY_VERIFY2(text().contains("valvecell_cells{online=\"t\"} 8"), qUtf8Printable(text()));
        QVERIFY2(text().contains("valvecell_up{part=\"broker\"} 1"), qUtf8Printable(text()));
    }

    void guessingIsStopped()
    {
        const QString attempt =
            "fetch('/api/login', {method: 'POST', body: JSON.stringify({name: 'x', password: 'y'})})"
            ".then(a => a.status)";
        for (int i = 0; i < 5; ++i)
            QCOMPARE(m_browser->value(attempt).toInt(), 401);
        QCOMPARE(m_browser->value(attempt).toInt(), 429);
    }

private:
    bool has(const QString& what)
    {
        return m_browser->value("document.querySelector('" + what + "') !== null").toBool();
    }
    void enter(const QString& password)
    {
        m_browser->value("document.querySelector('[name=name]').value = 'viewer';"
                         "document.querySelector('[name=password]').value = '" +
                         password + "'; document.querySelector('form .main').click()");
    }

    QTemporaryDir m_folder;
    OwnDatabase m_database;
    OwnProcess m_broker;
    OwnProcess m_cells;
    OwnProcess m_collector;
    QString m_page;
    std::unique_ptr<Browser> m_browser;
};

QTEST_GUILESS_MAIN(PlantPageTest)
#include "tst_plantpage.moc"
