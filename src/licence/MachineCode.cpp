#include "licence/MachineCode.h"

#include <QCryptographicHash>

#include <cstring>

namespace {

// Crockford's 32 characters: none of them is taken for another.
const char alphabet[] = "0123456789ABCDEFGHJKMNPQRSTVWXYZ";
constexpr int bitsEach = 5;
constexpr int codeDigits = 24; // and one that checks them
constexpr int groupLength = 5;

QByteArray sha256(const QByteArray& data)
{
    return QCryptographicHash::hash(data, QCryptographicHash::Sha256);
}

/// The first `count` characters for the bits of `bytes`, the most significant first.
QByteArray spell(const QByteArray& bytes, int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i) {
        const int bit = i * bitsEach;
        const int pair = uchar(bytes[bit / 8]) << 8 | uchar(bytes[bit / 8 + 1]);
        text += alphabet[pair >> (16 - bitsEach - bit % 8) & 31];
    }
    return text;
}

QString withCheck(const QByteArray& digits)
{
    const QByteArray all = digits + spell(sha256(digits), 1);
    QString code;
    for (int i = 0; i < all.size(); i += groupLength)
        code += (i > 0 ? QStringLiteral("-") : QString()) + QString::fromLatin1(all.mid(i, groupLength));
    return code;
}

char mended(QChar typed)
{
    switch (const char c = typed.toLatin1()) {
    case 'O':
        return '0';
    case 'I':
    case 'L':
        return '1';
    default:
        return c;
    }
}

} // namespace

QString MachineCode::of(const QByteArray& identity)
{
    return identity.isEmpty() ? QString() : withCheck(spell(sha256("ValveCell machine\n" + identity), codeDigits));
}

QString MachineCode::parse(const QString& typed)
{
    const QString plain = typed.normalized(QString::NormalizationForm_KC).toUpper();
    QByteArray digits;
    for (const QChar c : plain) {
        if (c.isSpace() || c == QLatin1Char('-'))
            continue;
        const char digit = mended(c);
        if (digit == '\0' || !std::strchr(alphabet, digit) || digits.size() > codeDigits)
            return {};
        digits += digit;
    }
    const QString code = withCheck(digits.left(codeDigits));
    const bool right = digits.size() == codeDigits + 1 && code.endsWith(QLatin1Char(digits[codeDigits]));
    return right ? code : QString();
}
