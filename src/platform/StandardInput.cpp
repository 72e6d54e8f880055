#include "platform/StandardInput.h"

#include <QSocketNotifier>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>
#else
#include <QCoreApplication>
#include <QPointer>

#include <io.h>
#include <iostream>
#include <string>
#include <thread>
#include <windows.h>
#endif

namespace platform {

void StandardInput::take(const QByteArray& bytes)
{
    m_rest += bytes;
    for (int end = m_rest.indexOf('\n'); end >= 0; end = m_rest.indexOf('\n')) {
        const QByteArray text = m_rest.left(end);
        m_rest.remove(0, end + 1);
        emit line(QString::fromUtf8(text.endsWith('\r') ? text.chopped(1) : text));
    }
}

void StandardInput::end()
{
    if (!m_rest.isEmpty())
        take("\n");
    emit closed();
}

#ifdef Q_OS_UNIX

StandardInput::StandardInput(QObject* parent)
    : QObject(parent)
    , m_notifier(new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this))
{
    connect(m_notifier, &QSocketNotifier::activated, this, &StandardInput::readSome);
}

bool StandardInput::isPipe()
{
    struct stat info = {};
    return ::fstat(STDIN_FILENO, &info) == 0 && (S_ISFIFO(info.st_mode) || S_ISSOCK(info.st_mode));
}

void StandardInput::readSome()
{
    char buffer[4096];
    const ssize_t got = ::read(STDIN_FILENO, buffer, sizeof(buffer));
    if (got > 0) {
        take(QByteArray(buffer, static_cast<int>(got)));
    } else if (got == 0 || (errno != EAGAIN && errno != EINTR)) {
        m_notifier->setEnabled(false);
        end();
    }
}

#else

StandardInput::StandardInput(QObject* parent)
    : QObject(parent)
{
    // A blocking read of a console cannot be called off; the thread ends with the process.
    std::thread([self = QPointer<StandardInput>(this), app = QPointer<QObject>(QCoreApplication::instance())] {
        const auto hand = [&](auto call) {
            if (app)
                QMetaObject::invokeMethod(app, [self, call] {
                    if (self)
                        call(self.data());
                });
        };
        for (std::string text; std::getline(std::cin, text);)
            hand([text](StandardInput* input) { input->take(QByteArray::fromStdString(text) + '\n'); });
        hand([](StandardInput* input) { input->end(); });
    }).detach();
}

bool StandardInput::isPipe()
{
    return ::GetFileType(::GetStdHandle(STD_INPUT_HANDLE)) == FILE_TYPE_PIPE;
}

void StandardInput::readSome() {}

#endif

} // namespace platform
