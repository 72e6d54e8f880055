#include "Options.h"

#include <QCoreApplication>

#include <opencv2/core/utility.hpp>

#include <cstdio>

namespace {

enum ExitCode { Good = 0, Failed = 1, BadArguments = 2 };

int complain(const QString& text, ExitCode code)
{
    std::fprintf(stderr, "wheelgen: %s\n", qUtf8Printable(text));
    return code;
}

int writeSet(const Options& options)
{
    QString error;
    if (!WheelSet::write(options.out, options.set, &error))
        return complain(error, Failed);
    std::printf("%s: %d wheels\n", qUtf8Printable(options.out), options.set.count);
    return Good;
}

int makeDemo(const Options& options)
{
    QString error;
    QStringList made;
    if (!DemoHome::make(options.demo, &made, &error))
        return complain(error, Failed);
    const QString what =
        made.isEmpty() ? QStringLiteral("is there") : QStringLiteral("made ") + made.join(QStringLiteral(", "));
    std::printf("%s: %s\n", qUtf8Printable(options.demo.home), qUtf8Printable(what));
    return Good;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    cv::setNumThreads(1); // each wheel is one job; --jobs says how many run at once
    Options options;
    QString error;
    if (!parseOptions(QCoreApplication::arguments().mid(1), &options, &error))
        return complain(error, BadArguments);
    if (options.task == Options::Set)
        return writeSet(options);
    if (options.task == Options::Demo)
        return makeDemo(options);
    std::printf("%s", qUtf8Printable(usage()));
    return Good;
}
