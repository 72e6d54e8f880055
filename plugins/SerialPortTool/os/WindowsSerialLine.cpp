#include "os/WindowsSerialLine.h"

namespace {

LineFault::Kind kindOf(DWORD error)
{
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        return LineFault::NoDevice;
    case ERROR_ACCESS_DENIED: // Windows forbids no user a port; somebody has it
    case ERROR_SHARING_VIOLATION:
        return LineFault::Busy;
    default:
        return LineFault::NotOpened;
    }
}

} // namespace

WindowsSerialLine::Transfer::Transfer(QObject* owner)
    : done(owner)
{
    overlapped.hEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    done.setHandle(overlapped.hEvent);
    done.setEnabled(false);
}

WindowsSerialLine::Transfer::~Transfer()
{
    done.setEnabled(false);
    CloseHandle(overlapped.hEvent);
}

bool WindowsSerialLine::Transfer::result(HANDLE port, DWORD& count, bool wait)
{
    done.setEnabled(false);
    isPending = false;
    return GetOverlappedResult(port, &overlapped, &count, wait) != 0;
}

WindowsSerialLine::WindowsSerialLine(QString name, qint32 baudRate)
    : m_name(std::move(name))
    , m_baudRate(baudRate)
{
    connect(&m_reading.done, &QWinEventNotifier::activated, this, &WindowsSerialLine::onByte);
    connect(&m_sending.done, &QWinEventNotifier::activated, this, &WindowsSerialLine::onSent);
}

WindowsSerialLine::~WindowsSerialLine()
{
    end();
}

/// Without the prefix, names from COM10 on would be files.
void WindowsSerialLine::begin()
{
    const QString path = QStringLiteral("\\\\.\\") + m_name;
    m_port = CreateFileW(reinterpret_cast<LPCWSTR>(path.utf16()), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                         OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr);
    if (m_port == INVALID_HANDLE_VALUE || !set())
        return fail(whyNot());
    if (!awaitByte())
        return lose();
    emit opened();
}

LineFault WindowsSerialLine::whyNot() const
{
    const DWORD error = GetLastError();
    return {kindOf(error), m_name, qt_error_string(static_cast<int>(error))};
}

/// A read takes what it takes: no pause ends it. What lay there belongs to a part that is gone.
bool WindowsSerialLine::set()
{
    DCB settings{};
    settings.DCBlength = sizeof settings;
    if (!GetCommState(m_port, &settings))
        return false;
    DCB plain{};
    plain.DCBlength = sizeof plain;
    plain.BaudRate = static_cast<DWORD>(m_baudRate);
    plain.fBinary = TRUE;
    plain.ByteSize = 8;
    plain.Parity = NOPARITY;
    plain.StopBits = ONESTOPBIT;
    plain.fDtrControl = DTR_CONTROL_ENABLE;
    plain.fRtsControl = RTS_CONTROL_ENABLE;
    plain.XonLim = settings.XonLim;
    plain.XoffLim = settings.XoffLim;
    plain.XonChar = settings.XonChar;
    plain.XoffChar = settings.XoffChar;
    COMMTIMEOUTS times{};
    return SetCommState(m_port, &plain) && SetCommTimeouts(m_port, &times) &&
           PurgeComm(m_port, PURGE_RXCLEAR | PURGE_TXCLEAR);
}

void WindowsSerialLine::lose()
{
    fail({LineFault::Lost, m_name, {}});
}

bool WindowsSerialLine::awaitByte()
{
    m_reading.bytes.resize(1);
    const bool taken = ReadFile(m_port, m_reading.bytes.data(), 1, nullptr, &m_reading.overlapped) ||
                       GetLastError() == ERROR_IO_PENDING;
    m_reading.isPending = taken;
    m_reading.done.setEnabled(taken);
    return taken;
}

void WindowsSerialLine::onByte()
{
    DWORD count = 0;
    if (!m_reading.result(m_port, count))
        return lose();
    m_received += m_reading.bytes.left(static_cast<int>(count));
    if (!takeRest() || !awaitByte())
        return lose();
    emit readyRead();
}

bool WindowsSerialLine::takeRest()
{
    COMSTAT state{};
    DWORD errors = 0;
    if (!ClearCommError(m_port, &errors, &state))
        return false;
    if (state.cbInQue == 0)
        return true;
    m_reading.bytes.resize(static_cast<int>(state.cbInQue));
    DWORD count = 0;
    const bool taken = (ReadFile(m_port, m_reading.bytes.data(), state.cbInQue, nullptr, &m_reading.overlapped) ||
                        GetLastError() == ERROR_IO_PENDING) &&
                       m_reading.result(m_port, count, true);
    m_received += m_reading.bytes.left(static_cast<int>(count));
    return taken;
}

qint64 WindowsSerialLine::waiting() const
{
    COMSTAT state{};
    DWORD errors = 0;
    const bool known = m_port != INVALID_HANDLE_VALUE && ClearCommError(m_port, &errors, &state);
    return m_toSend.size() + (m_sending.isPending ? m_sending.bytes.size() : known ? qint64(state.cbOutQue) : 0);
}

bool WindowsSerialLine::write(const QByteArray& bytes)
{
    if (!isActive() || m_port == INVALID_HANDLE_VALUE)
        return false;
    m_toSend += bytes;
    return m_sending.isPending || send();
}

bool WindowsSerialLine::send()
{
    m_sending.bytes = std::exchange(m_toSend, {});
    const auto size = static_cast<DWORD>(m_sending.bytes.size());
    const bool taken = WriteFile(m_port, m_sending.bytes.constData(), size, nullptr, &m_sending.overlapped) ||
                       GetLastError() == ERROR_IO_PENDING;
    m_sending.isPending = taken;
    m_sending.done.setEnabled(taken);
    return taken;
}

void WindowsSerialLine::onSent()
{
    DWORD count = 0;
    if (!m_sending.result(m_port, count) || (!m_toSend.isEmpty() && !send()))
        lose();
}

/// What the system still works on lies in this object: it has to let go first.
void WindowsSerialLine::end()
{
    if (m_port == INVALID_HANDLE_VALUE)
        return;
    CancelIoEx(m_port, nullptr);
    DWORD count = 0;
    for (Transfer* each : {&m_reading, &m_sending})
        if (each->isPending)
            each->result(m_port, count, true);
    CloseHandle(std::exchange(m_port, INVALID_HANDLE_VALUE));
    m_received.clear();
    m_toSend.clear();
}

std::unique_ptr<ByteLine> serialLineFor(const QString& name, qint32 baudRate)
{
    return std::make_unique<WindowsSerialLine>(name, baudRate);
}
