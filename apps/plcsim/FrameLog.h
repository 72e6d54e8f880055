#pragma once

#include <QObject>

class PlcLine;
struct SComFrame;

/// Prints what passes over the line, with time and direction: ">" to the program, "<" from it.
class FrameLog : public QObject
{
    Q_OBJECT

public:
    enum Detail { WithoutHeartbeat, Everything };

    FrameLog(PlcLine& line, Detail detail);

private:
    void print(const QString& text) const;
    void onReceived(const SComFrame& frame) const;

    const Detail m_detail;
};
