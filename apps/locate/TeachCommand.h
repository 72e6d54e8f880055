#pragma once

#include "SolutionStore.h"

#include <QJsonObject>

class QCommandLineParser;

/// The solutions below the home.
SolutionStore readSolutions();
/// The solution that is named, else the only one; of an empty home the name of one to be made. Empty when several could
/// be meant.
QString solutionOf(const QCommandLineParser& parser, SolutionStore& store);

/// The options that change or read a model's examples instead of locating.
namespace TeachCommand {

void addOptions(QCommandLineParser& parser);
/// Whether one of them was given.
bool isAsked(const QCommandLineParser& parser);
/// What is wrong with the command line; empty when nothing is.
QString misuse(const QCommandLineParser& parser, SolutionStore& store);
/// Does what was asked for, and returns the line to print; empty, with the reason, when it could not be done.
QJsonObject run(const QCommandLineParser& parser, SolutionStore& store, QString* error);

} // namespace TeachCommand
