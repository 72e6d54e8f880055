#include "db/ResultRecorder.h"
#include "db/archive/ImageArchive.h"

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>

/// A cell in full production, to be killed: answers a part, prints its number, archives its image and records it, and
/// goes on to the next.
int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QString home = application.arguments().value(1);
    int number = application.arguments().value(2).toInt();
    StationDB database(home + "/DBFiles/Pellix.db");
    if (!database.initialise())
        return 1;
    ResultRecorder recorder(database);
    ImageArchive archive(home);
    QImage image(320, 240, QImage::Format_Grayscale8);
    image.fill(Qt::gray);

    QTimer parts;
    QObject::connect(&parts, &QTimer::timeout, [&] {
        std::printf("%d\n", number);
        std::fflush(stdout);
        StationResult result;
        result.value1 = archive.save(1, "W18", image, ImageArchive::Result);
        result.value3 = QString::number(number++);
        recorder.record(result);
    });
    parts.start(0);
    return QCoreApplication::exec();
}
