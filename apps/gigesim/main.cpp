#include "sim/GigeSim.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QImageReader>
#include <QSocketNotifier>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace {

/// The images of a folder in plain order of their names and around again; the next is read before it is needed.
class Pictures
{
public:
    explicit Pictures(const QString& folder)
        : m_folder(folder)
        , m_names(QDir(folder).entryList({"*.bmp", "*.png", "*.jpg", "*.pgm", "*.tif"}, QDir::Files, QDir::Unsorted))
    {
        std::sort(m_names.begin(), m_names.end());
        advance();
    }

    bool isEmpty() const { return m_next.isNull(); }
    QSize size() const { return m_next.size(); }
    QImage take()
    {
        const QImage image = m_next;
        advance();
        return image;
    }

private:
    void advance()
    {
        for (int tries = 0; tries < m_names.size(); ++tries) {
            const QString name = m_names[m_at++ % m_names.size()];
            QImageReader reader(m_folder.filePath(name));
            m_next = reader.read();
            if (!m_next.isNull())
                return;
            std::fprintf(stderr, "gigesim: %s: %s%s\n", qUtf8Printable(name), qUtf8Printable(reader.errorString()),
                         lacksPlugin(name) ? "; Qt's TIFF plug-in (qt5-image-formats-plugins) is not installed" : "");
        }
    }

    static bool lacksPlugin(const QString& name)
    {
        return name.contains(QStringLiteral(".tif"), Qt::CaseInsensitive) &&
               !QImageReader::supportedImageFormats().contains("tiff");
    }

    QDir m_folder;
    QStringList m_names;
    int m_at = 0;
    QImage m_next;
};

constexpr const char* commands = "stall, resume, vanish, return, restart, drop N, unasked N, line, quit";

/// One line of the standard input; false for one that makes no sense.
bool obey(const QString& line, GigeSim* sim, GigeSim::Faults* faults)
{
    const QStringList words = line.simplified().split(QLatin1Char(' '));
    const QString& order = words.first();
    const int number = words.value(1).toInt();
    if (order == QLatin1String("stall") || order == QLatin1String("resume"))
        faults->stalled = order == QLatin1String("stall");
    else if (order == QLatin1String("vanish") || order == QLatin1String("return"))
        faults->silent = order == QLatin1String("vanish");
    else if (order == QLatin1String("drop"))
        faults->dropEvery = number;
    else if (order == QLatin1String("unasked"))
        faults->unasked = number;
    else if (order == QLatin1String("restart"))
        sim->powerCycle();
    else if (order == QLatin1String("line"))
        sim->fireLine();
    else if (order == QLatin1String("quit"))
        QCoreApplication::quit();
    else
        return false;
    sim->setFaults(*faults);
    return true;
}

int complain(const QString& text)
{
    std::fprintf(stderr, "gigesim: %s\n", qUtf8Printable(text));
    return 2;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral(VALVECELL_VERSION));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A GigE Vision camera in software. Reads commands, one a line: ") +
                                     QLatin1String(commands) +
                                     QLatin1String(".\nExit code: 0 ended; 2 no image, or the address is taken."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({{"images", "The folder whose images it delivers, one a trigger.", "DIR"},
                       {"interface", "The address at which it is (127.0.0.1).", "ADDRESS", "127.0.0.1"},
                       {"serial", "Its serial number (SIM-1).", "TEXT", "SIM-1"},
                       {"name", "The name that somebody gave it.", "TEXT"},
                       {"megabits", "Speed of its network, 0 for any (1000).", "N", "1000"},
                       {"drop-every", "Every Nth frame lacks a packet.", "N", "0"},
                       {"largest-packet", "Bytes that the network carries (all).", "N", "0"}});
    parser.process(app);
    auto pictures = std::make_shared<Pictures>(parser.value("images"));
    if (pictures->isEmpty())
        return complain(QStringLiteral("--images: there is no image in \"%1\"").arg(parser.value("images")));
    GigeSim::Identity identity;
    identity.address = QHostAddress(parser.value("interface"));
    identity.serial = parser.value("serial").toUtf8();
    identity.userName = parser.value("name").toUtf8();
    identity.sensor = pictures->size();
    identity.megabits = parser.value("megabits").toInt();
    GigeSim sim(identity, [pictures](quint64) { return pictures->take(); });
    GigeSim::Faults faults;
    faults.dropEvery = parser.value("drop-every").toInt();
    faults.largestPacket = parser.value("largest-packet").toInt();
    QString error;
    if (!sim.start(&error))
        return complain(error);
    sim.setFaults(faults);
    std::printf("%s at %s\n", identity.serial.constData(), qUtf8Printable(identity.address.toString()));
    std::fflush(stdout);
    QTextStream input(stdin);
    QSocketNotifier typed(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&typed, &QSocketNotifier::activated, &app, [&] {
        const QString line = input.readLine();
        if (line.isNull())
            typed.setEnabled(false);
        else if (!obey(line, &sim, &faults))
            complain(QStringLiteral("\"%1\" is none of: %2").arg(line, QLatin1String(commands)));
    });
    return app.exec();
}
