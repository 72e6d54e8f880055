#pragma once

#include "CellTruth.h"
#include "PartReport.h"
#include "SimOptions.h"

#include <valvecell/SComFrame.h>

#include <QObject>
#include <QRandomGenerator>
#include <QTimer>

#include <optional>

class PlcLine;

/// What came of cutting the line again and again.
struct CutFigures
{
    int cuts = 0;
    int triggers = 0;
    int answers = 0;
    int inHand = 0; ///< triggers whose answer was still to come when the line was cut
    int stray = 0;  ///< answers to no trigger of the connection that they came in
    QVector<double> backMs;
    double awayCpuMs = 0; ///< of the program, over awayMs
    double awayMs = 0;    ///< from when no part can be in hand any more

    std::optional<double> awayCpuPercent() const;
    QStringList summary() const;
    QByteArray json() const;
};

/// One run with --cuts: triggers one station again and again, cuts the line at a random moment, puts it back after a
/// random time, and goes on with the other station as soon as the program is heard. The stations tell a late answer of
/// the connection before from an answer of this one.
class CutSession : public QObject
{
    Q_OBJECT

public:
    CutSession(PlcLine& line, SimOptions options);

    /// Reads the images' indices; false with the reason when the run cannot begin. finished() follows a true.
    bool start(QString* error);
    /// Ends the run early: reports what was seen.
    void stop();

signals:
    /// 0 when the program came back from every cut and sent no answer of a connection that was gone, otherwise 1.
    void finished(int exitCode);

private:
    int station() const { return 1 + m_figures.cuts % 2; }
    void onFrame(const SComFrame& frame, qint64 atNs);
    /// The program is heard for the first time on this connection.
    void onBack(qint64 atNs);
    void count(const SComFrame& frame);
    void trigger();
    void cut();
    /// What the program does from now on, it does because the line is away.
    void noteSettled();
    void onPluggedIn();
    void onNoProgram();
    void report();

    PlcLine& m_line;
    const SimOptions m_options;
    SComFrame m_models;
    QRandomGenerator m_random;
    CutFigures m_figures;
    int m_open = 0;         ///< triggers of this connection that were not answered
    bool m_heard = false;   ///< the program, on this connection
    qint64 m_pluggedNs = 0; ///< 0 before the first cut
    qint64 m_settledNs = 0;
    std::optional<double> m_settledCpuMs; ///< nothing before noteSettled()
    QTimer m_traffic;
    QTimer m_cut;
    QTimer m_settled;
    QTimer m_patience;
};
