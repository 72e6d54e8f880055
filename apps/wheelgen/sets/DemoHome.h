#pragma once

#include <QString>
#include <QStringList>

#include <opencv2/core.hpp>

/// What a demo home shall be like.
struct DemoPlan
{
    QString home;
    bool fresh = false;   ///< make it anew, with everything that the program has stored in it since
    QString port;         ///< that the program is set to, also if it has another; empty: what it has, or the link "plc"
    QString camerasFrom;  ///< folder whose images both cameras deliver; empty: the demo's own wheels
    bool network = false; ///< the cameras are network cameras, which somebody simulates at DemoHome::cameraAddress()
    cv::Size size{2448, 2048};
    int jobs = 1;
};

/// A home with two stations, ready to be started: sample wheels with their truth, configuration, PLC index table,
/// cameras, solutions and models. A stamp file, demo.json, holds version and completeness; a making that was cut short
/// and a home of another version are made anew.
namespace DemoHome {

constexpr int imagesPerStation = 16;

/// Where the network camera of a station is, 1 or 2.
QString cameraAddress(int station);

/// Makes what is missing; files that are there stay, but for the port. A home that was not made by this program only
/// gets what it lacks, `fresh` and `camerasFrom` are refused for it. `made` names what was made, relative to the home.
/// On failure false, and `error` says what and where.
///
/// images/N/truth.json always describes what the camera of station N delivers; it is absent when nothing is known of
/// the images of `camerasFrom`.
bool make(const DemoPlan& plan, QStringList* made, QString* error);

} // namespace DemoHome
