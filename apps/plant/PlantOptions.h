#pragma once

#include "collect/Collector.h"
#include "http/PageServer.h"

#include <QStringList>

/// What the program was asked for on its command line.
struct PlantOptions
{
    Collector::Options collector;
    PageServer::Options page;
    QString addUser; ///< set: this account is made, and nothing else done
    bool admin = false;
    QString shifts; ///< set: these are the plant's shifts from now on, and nothing else done
    QString keep;   ///< set: the retention from now on, and nothing else done

    /// False when something is wrong; `error` says what.
    bool parse(const QStringList& arguments, QString* error);
    static QString help();
};
