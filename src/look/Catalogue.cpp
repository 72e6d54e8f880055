#include "look/Catalogue.h"

#include <valvecell/HomeFiles.h>

#include <QMap>
#include <QtEndian>

namespace {

/// Takes numbers off bytes, and never reads beyond them.
class Reader
{
public:
    explicit Reader(const QByteArray& bytes)
        : m_rest(bytes)
    {
    }

    bool atEnd() const { return m_rest.isEmpty(); }
    bool isGood() const { return m_good; }

    template <typename Number>
    Number number()
    {
        const QByteArray bytes = take(sizeof(Number));
        return m_good ? qFromBigEndian<Number>(bytes.constData()) : Number(0);
    }

    QByteArray take(quint32 count)
    {
        m_good = m_good && count <= quint32(m_rest.size());
        const QByteArray taken = m_good ? part(0, count) : QByteArray();
        m_rest = m_good ? part(int(count), quint32(m_rest.size()) - count) : QByteArray();
        return taken;
    }

private:
    QByteArray part(int at, quint32 count) const
    {
        return QByteArray::fromRawData(m_rest.constData() + at, int(count));
    }

    QByteArray m_rest;
    bool m_good = true;
};

QByteArray from(const QByteArray& bytes, quint32 offset)
{
    Reader reader(bytes);
    reader.take(offset);
    return reader.isGood() ? reader.take(quint32(bytes.size()) - offset) : QByteArray();
}

/// A message is a list of parts and ends with an end.
bool isMessage(const QByteArray& bytes)
{
    enum Part : quint8 { End = 1, Translation = 3, Obsolete = 5, SourceText = 6, Context = 7, Comment = 8 };
    Reader reader(bytes);
    while (reader.isGood()) {
        switch (reader.number<quint8>()) {
        case End:
            return reader.isGood();
        case Obsolete:
            reader.take(4);
            break;
        case Translation: {
            const quint32 length = reader.number<quint32>();
            if (length % 2 != 0) // of an empty one; Qt reads no further
                return reader.isGood();
            reader.take(length);
            break;
        }
        case SourceText:
        case Context:
        case Comment:
            reader.take(reader.number<quint32>());
            break;
        default:
            return false;
        }
    }
    return false;
}

/// A table of hashes, each with the place of its message.
bool areMessages(const QByteArray& hashes, const QByteArray& messages)
{
    Reader reader(hashes);
    while (!reader.atEnd()) {
        reader.number<quint32>();
        if (!isMessage(from(messages, reader.number<quint32>())))
            return false;
    }
    return reader.isGood();
}

/// A table of places, each of a list of names that ends with an empty one.
bool areContexts(const QByteArray& contexts)
{
    Reader reader(contexts);
    const quint16 count = reader.number<quint16>();
    const quint32 pool = 2u + 2u * count;
    for (int i = 0; i < count && reader.isGood(); ++i) {
        const quint32 place = reader.number<quint16>();
        Reader names(from(contexts, pool + 2 * place));
        for (quint8 length = 1; place > 0 && length > 0 && names.isGood();) {
            length = names.number<quint8>();
            names.take(length);
        }
        if (!names.isGood())
            return false;
    }
    return count > 0 && reader.isGood();
}

/// Qt's own reader trusts each place and length behind the sections' heads, and a wrong one ends the program.
bool isSound(const QByteArray& file)
{
    enum Section : quint8 { Contexts = 0x2f, Hashes = 0x42, Messages = 0x69 };
    constexpr quint32 magicBytes = 16;
    QMap<quint8, QByteArray> sections;
    Reader reader(file);
    reader.take(magicBytes);
    while (reader.isGood() && !reader.atEnd()) {
        const quint8 tag = reader.number<quint8>();
        sections[tag] = reader.take(reader.number<quint32>());
    }
    return reader.isGood() && areMessages(sections.value(Hashes), sections.value(Messages)) &&
           (!sections.contains(Contexts) || areContexts(sections.value(Contexts)));
}

} // namespace

Catalogue::~Catalogue()
{
    QCoreApplication::removeTranslator(this); // before its bytes go
}

bool Catalogue::read(const QString& path)
{
    QFile file(path);
    if (HomeFiles::isNoFile(path) || !file.open(QIODevice::ReadOnly) || file.size() > HomeFiles::maxFileBytes)
        return false;
    m_bytes = file.readAll();
    return isSound(m_bytes) && load(reinterpret_cast<const uchar*>(m_bytes.constData()), m_bytes.size());
}
