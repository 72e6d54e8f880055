// Makes keys, issues licences and checks them; for the vendor of the program.

#include "Commands.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char* argv[])
{
    const QCoreApplication app(argc, argv);
    const Outcome outcome = runCommand(QCoreApplication::arguments().mid(1));
    const bool answered = outcome.code == Good || outcome.code == Refused;
    std::fprintf(answered ? stdout : stderr, "%s%s\n", answered ? "" : "licencetool: ", qUtf8Printable(outcome.text));
    return outcome.code;
}
