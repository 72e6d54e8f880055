#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <string>

namespace SystemLog {

/// The text of one log line, built in a buffer of fixed size without allocating. What does not fit is cut, text at a
/// whole character, numbers wholly.
class LogStream
{
public:
    static constexpr std::size_t capacity = 4000; ///< bytes

    const char* data() const { return m_buffer; }
    int size() const { return static_cast<int>(m_size); }
    std::size_t available() const { return capacity - m_size; }

    void append(const char* bytes, std::size_t length);
    void appendUtf8(const char* bytes, std::size_t length);
    void clear() { m_size = 0; }

    LogStream& operator<<(bool value) { return *this << (value ? '1' : '0'); }
    LogStream& operator<<(char value);
    LogStream& operator<<(int value) { return *this << static_cast<long long>(value); }
    LogStream& operator<<(unsigned value) { return *this << static_cast<unsigned long long>(value); }
    LogStream& operator<<(long value) { return *this << static_cast<long long>(value); }
    LogStream& operator<<(unsigned long value) { return *this << static_cast<unsigned long long>(value); }
    LogStream& operator<<(long long value);
    LogStream& operator<<(unsigned long long value);
    LogStream& operator<<(float value) { return *this << static_cast<double>(value); }
    LogStream& operator<<(double value);      ///< as "%.12g"
    LogStream& operator<<(const void* value); ///< "0x" and lower-case hexadecimal digits
    LogStream& operator<<(const char* utf8);
    LogStream& operator<<(const std::string& utf8);
    LogStream& operator<<(const QByteArray& utf8);
    LogStream& operator<<(const QString& text);

private:
    char m_buffer[capacity];
    std::size_t m_size = 0;
};

} // namespace SystemLog
