#include "licence/MachineCode.h"

#include <QCryptographicHash>

#include <cstring>

namespace {

// Crockford's 32 characters: none of them is taken for another.
const char kAlphabet[] = "0123456789ABCDEFGHJKMNPQRSTVWXYZ";
constexpr int kBitsEach = 5;
constexpr int kDigits = 24; // and one that checks them
constexpr int kGroup = 5;

QByteArray sha256(const QByteArray& data)
{
    return QCryptographicHash::hash(data, QCryptographicHash::Sha256);
}

/// The first `count` characters for the bits of `bytes`, the most significant first.
QByteArray spell(const QByteArray& bytes, int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i) {
        const int bit = i * kBitsEach;
        const int pair = uchar(bytes[bit / 8]) << 8 | uchar(bytes[bit / 8 + 1]);
        text += kAlphabet[pair >> (16 - kBitsEach - bit % 8) & 31];
    }
    return text;
}

QString withCheck(const QByteArray& digits)
{
    const QByteArray all = digits + spell(sha256(digits), 1);
    QString code;
    for (int i = 0; i < all.size(); i += kGroup)
        code += (i > 0 ? QStringLiteral("-") : QString()) + QString::fromLatin1(all.mid(i, kGroup));
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
    return identity.isEmpty() ? QString() : withCheck(spell(sha256("ValveCell machine\n" + identity), kDigits));
}

QString MachineCode::parse(const QString& typed)
{
    const QString plain = typed.normalized(QString::NormalizationForm_KC).toUpper();
    QByteArray digits;
    for (const QChar c : plain) {
        if (c.isSpace() || c == QLatin1Char('-'))
            continue;
        const char digit = mended(c);
        if (digit == '\0' || !std::strchr(kAlphabet, digit) || digits.size() > kDigits)
            return {};
        digits += digit;
    }
    const QString code = withCheck(digits.left(kDigits));
    const bool right = digits.size() == kDigits + 1 && code.endsWith(QLatin1Char(digits[kDigits]));
    return right ? code : QString();
}
