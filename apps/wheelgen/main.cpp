#include "sets/WheelSet.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <opencv2/core/utility.hpp>

#include <cstdio>

namespace {

int fail(const QString& text, int code)
{
    std::fprintf(stderr, "wheelgen: %s\n", qPrintable(text));
    return code;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    cv::setNumThreads(1);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{"out", "Folder for the images and truth.json.", "DIR"},
                       {"count", "Number of wheels.", "N", "16"},
                       {"seed", "Seed of everything random.", "S", "1"},
                       {"without-hole", "Fraction of wheels without a valve hole.", "FRACTION", "0"},
                       {"design", "One design only.", "NAME"},
                       {"difficulty", "easy, demo or varied.", "LEVEL", "varied"},
                       {"size", "Image size.", "WxH", "2448x2048"},
                       {"format", "bmp or png.", "FORMAT", "bmp"},
                       {"jobs", "Wheels rendered at the same time.", "N", "1"}});
    parser.process(app);
    if (!parser.isSet("out"))
        return fail("--out is missing", 2);
    WheelSetPlan plan;
    plan.count = parser.value("count").toInt();
    plan.seed = parser.value("seed").toULongLong();
    plan.withoutHole = parser.value("without-hole").toDouble();
    if (parser.isSet("design"))
        plan.designs = QStringList{parser.value("design")};
    if (!wheel::difficultyFromName(parser.value("difficulty").toStdString(), &plan.difficulty))
        return fail("--difficulty: not easy, demo or varied", 2);
    const QStringList size = parser.value("size").split('x');
    if (size.size() == 2)
        plan.size = {size[0].toInt(), size[1].toInt()};
    plan.format = parser.value("format");
    plan.jobs = parser.value("jobs").toInt();
    QString error;
    return WheelSet::write(parser.value("out"), plan, &error) ? 0 : fail(error, 1);
}
