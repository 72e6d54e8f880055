#pragma once

#include <QObject>

class QSocketNotifier;

namespace platform {

/// The process's standard input, line by line as it comes, without blocking the event loop of its thread. One object a
/// process.
class StandardInput : public QObject
{
    Q_OBJECT

public:
    explicit StandardInput(QObject* parent = nullptr);

    /// Whether somebody holds the other end: a pipe. A terminal, a file or nothing at all is not.
    static bool isPipe();

signals:
    void line(const QString& text); ///< without its line end
    void closed();

private:
    /// Tells the lines that are complete, and keeps the beginning of the next.
    void take(const QByteArray& bytes);
    void readSome();
    void end();

    QByteArray m_rest;
    QSocketNotifier* m_notifier = nullptr;
};

} // namespace platform
