#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstring>
#include <random>

// Mutates JSON as JSON, so that what lies behind the parser is reached: values change their kind, keys go, move and
// stand where others stood. One time in four the bytes are changed as everywhere, for the parser's sake.

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace {

using Random = std::minstd_rand;

QString spoiled(const QString& text)
{
    QByteArray bytes = text.toUtf8();
    const int size = bytes.size();
    bytes.resize(size + 16);
    const size_t now = LLVMFuzzerMutate(reinterpret_cast<uint8_t*>(bytes.data()), size_t(size), size_t(bytes.size()));
    return QString::fromUtf8(bytes.left(int(now)));
}

QJsonValue oddValue(Random& random)
{
    static const QJsonArray values{0,
                                   -1,
                                   1,
                                   0.5,
                                   1e308,
                                   -1e308,
                                   1e-308,
                                   4096,
                                   32768,
                                   2147483647.0,
                                   2147483648.0,
                                   -2147483649.0,
                                   1e19,
                                   true,
                                   false,
                                   QJsonValue(),
                                   QJsonObject(),
                                   QJsonArray(),
                                   "",
                                   "0",
                                   "nan",
                                   "-inf",
                                   "\xE5\x8F\xB0",
                                   "../x",
                                   "'",
                                   " ",
                                   "2026-11-22T08:00:00.000",
                                   QString(300, 'x'),
                                   QString(QChar(0xD800)),
                                   "\n"};
    return values.at(int(random() % unsigned(values.size())));
}

QJsonValue changed(const QJsonValue& value, Random& random);

QJsonObject changed(QJsonObject object, Random& random)
{
    const QStringList keys = object.keys();
    const QString key = keys[int(random() % unsigned(keys.size()))];
    const QString other = keys[int(random() % unsigned(keys.size()))];
    switch (random() % 8) {
    case 0:
        object.remove(key);
        break;
    case 1:
        object[spoiled(key)] = object.take(key);
        break;
    case 2:
        object[other] = object.value(key);
        break;
    case 3:
        object[spoiled(key)] = oddValue(random);
        break;
    default:
        object[key] = changed(object.value(key), random);
    }
    return object;
}

QJsonArray changed(QJsonArray array, Random& random)
{
    const int at = int(random() % unsigned(array.size()));
    switch (random() % 6) {
    case 0:
        array.removeAt(at);
        break;
    case 1:
        array.append(array.at(at));
        break;
    case 2:
        array.insert(at, oddValue(random));
        break;
    default:
        array[at] = changed(array.at(at), random);
    }
    return array;
}

QJsonValue changed(const QJsonValue& value, Random& random)
{
    if (value.isObject() && !value.toObject().isEmpty() && random() % 8 > 0)
        return changed(value.toObject(), random);
    if (value.isArray() && !value.toArray().isEmpty() && random() % 8 > 0)
        return changed(value.toArray(), random);
    if (value.isString() && random() % 2)
        return spoiled(value.toString());
    if (value.isDouble() && random() % 2)
        return value.toDouble() * (int(random() % 9) - 4) + int(random() % 3);
    return oddValue(random);
}

} // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned seed)
{
    Random random(seed);
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size));
    const QJsonObject object = QJsonDocument::fromJson(bytes).object();
    if (object.isEmpty() || random() % 4 == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    const QByteArray text = QJsonDocument(changed(object, random)).toJson(QJsonDocument::Compact);
    if (size_t(text.size()) > maxSize)
        return LLVMFuzzerMutate(data, size, maxSize);
    std::memcpy(data, text.constData(), size_t(text.size()));
    return size_t(text.size());
}
