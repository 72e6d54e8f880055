#pragma once

#include "GrantedClock.h"

#include <QLibrary>
#include <QStringList>

#include <exception>
#include <functional>

/// The module that is checked, in a process of its own, and what was found. GUI thread, but for call() and what
/// reports.
class Subject
{
public:
    enum Kind { None, CoreCtrl, Engine, Designer, SerialPort, UserCtrl };

    /// `kind`: by its symbols; None with a fault when it cannot be loaded or has none of them.
    explicit Subject(const QString& file);

    Kind kind() const { return m_kind; }
    const QString& file() const { return m_file; }

    /// The module's object, made anew; a fault, and null, when it gives none.
    template <typename Interface>
    Interface* make()
    {
        void* made = nullptr;
        call(m_symbol, 5000, [&] { made = create(); });
        if (!made)
            fault(QStringLiteral("%1 returns null").arg(QLatin1String(m_symbol)));
        return static_cast<Interface*>(made);
    }

    /// Calls into the module: it is a fault to throw, and to take longer than so many milliseconds. Returns whether it
    /// came back as it should.
    template <typename Call>
    bool call(const char* name, int withinMs, Call work)
    {
        step(name);
        const qint64 before = GrantedClock::ms();
        try {
            work();
        } catch (const std::exception& thrown) {
            fault(QStringLiteral("%1 throws: %2").arg(QLatin1String(name), QString::fromUtf8(thrown.what())));
            return false;
        } catch (...) {
            fault(QStringLiteral("%1 throws").arg(QLatin1String(name)));
            return false;
        }
        const qint64 taken = GrantedClock::ms() - before;
        if (taken > withinMs)
            fault(QStringLiteral("%1 takes %2 ms, %3 at most").arg(QLatin1String(name)).arg(taken).arg(withinMs));
        return true;
    }

    /// The contract is broken. Any thread.
    void fault(const QString& sentence) const;
    /// Nothing is broken, but the author may want to know.
    void note(const QString& sentence) const;
    /// What is done next: the last one is named when the process dies or hangs.
    void step(const char* name) const;

    /// Waits until the condition holds, at most so long, on the GUI thread with the event loop running; returns whether
    /// it does.
    static bool waitFor(const std::function<bool()>& condition, int ms);

private:
    void* create();

    const QString m_file;
    QLibrary m_library;
    Kind m_kind = None;
    const char* m_symbol = "";
};

/// What a call that "returns at once" may take.
constexpr int atOnceMs = 200;
