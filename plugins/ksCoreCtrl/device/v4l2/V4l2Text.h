#pragma once

#include <QString>

/// What an error of a Video4Linux call means and what helps, in the operator's language; `call` is its name as the
/// kernel's documentation has it, for what nobody expects.
QString v4l2Problem(const char* call, int error);

/// A fixed array of characters that may be full.
template <typename Char, size_t size>
QString v4l2Text(const Char (&text)[size])
{
    const char* first = reinterpret_cast<const char*>(text);
    return QString::fromUtf8(first, int(qstrnlen(first, size))).trimmed();
}

/// The four letters of a pixel format.
QString v4l2FormatName(quint32 fourcc);
