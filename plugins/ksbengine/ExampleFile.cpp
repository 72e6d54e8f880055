#include "ExampleFile.h"

#include "finder/ImageConversion.h"

#include <valvecell/HomeFiles.h>

#include <QBuffer>
#include <QImageReader>
#include <QJsonArray>

#include <array>
#include <cmath>

namespace {

using finder::HoleExample;
using finder::HoleExamples;

const QString patchName = QStringLiteral("patch");
const QString sourceName = QStringLiteral("source");

struct Size
{
    const char* name;
    double HoleExample::*member;
};

constexpr std::array<Size, 5> sizes{{
    {"ring_share", &HoleExample::ringShare},
    {"hole_share", &HoleExample::holeShare},
    {"rim_radius", &HoleExample::rimRadius},
    {"ring_radius", &HoleExample::ringRadius},
    {"hole_radius", &HoleExample::holeRadius},
}};

struct List
{
    const char* name;
    QVector<HoleExample> HoleExamples::*member;
};

constexpr std::array<List, 2> lists{{{"holes", &HoleExamples::holes}, {"rejected", &HoleExamples::rejected}}};

QByteArray encoded(const cv::Mat& patch)
{
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    finder::toImage(patch).save(&buffer, "PNG");
    return png.toBase64();
}

/// Empty when it is no picture of a patch's size; the size is asked before pixels are reserved.
cv::Mat decoded(const QByteArray& base64)
{
    QByteArray png = QByteArray::fromBase64(base64);
    QBuffer buffer(&png);
    QImageReader reader(&buffer, "png");
    if (reader.size() != QSize(HoleExample::patchSide, HoleExample::patchSide))
        return {};
    const finder::GrayImage image = finder::toGray(reader.read());
    return image.gray.clone();
}

QString readList(const QJsonValue& value, QVector<HoleExample>* list)
{
    QString error;
    const QJsonArray entries = value.toArray();
    if (!value.isArray() || entries.size() > HoleExamples::most)
        error = QStringLiteral("not a list of at most %1 examples").arg(HoleExamples::most);
    for (int i = 0; i < std::min(entries.size(), HoleExamples::most); ++i) {
        HoleExample example;
        QString reason;
        if (ExampleFile::readEntry(entries.at(i).toObject(), &example, &reason))
            list->append(example);
        else
            error = QStringLiteral("entry %1: %2").arg(i + 1).arg(reason);
    }
    return error;
}

} // namespace

namespace ExampleFile {

QJsonObject entryOf(const HoleExample& example)
{
    QJsonObject entry{{patchName, QString::fromLatin1(encoded(example.patch))}, {sourceName, example.source}};
    for (const Size& size : sizes)
        entry.insert(QLatin1String(size.name), example.*size.member);
    return entry;
}

bool readEntry(const QJsonObject& entry, HoleExample* example, QString* error)
{
    HoleExample read;
    for (const Size& size : sizes) {
        const double value = entry.value(QLatin1String(size.name)).toDouble();
        if (!(value > 0) || !std::isfinite(value)) {
            *error = QStringLiteral("\"%1\" is no positive number").arg(QLatin1String(size.name));
            return false;
        }
        read.*size.member = value;
    }
    read.patch = decoded(entry.value(patchName).toString().toLatin1());
    if (read.patch.empty()) {
        *error = QStringLiteral("\"%1\" is no picture of %2 x %2 pixels").arg(patchName).arg(HoleExample::patchSide);
        return false;
    }
    read.source = entry.value(sourceName).toString();
    *example = read;
    return true;
}

HoleExamples read(const QString& path, QString* error)
{
    HoleExamples examples;
    error->clear();
    const HomeFiles::JsonRead file = HomeFiles::readJson(path);
    if (file.state == HomeFiles::JsonRead::Missing)
        return examples;
    *error = file.error;
    if (file.state == HomeFiles::JsonRead::Damaged)
        return examples;
    for (const List& list : lists) {
        const QString name = QLatin1String(list.name);
        const QString reason = readList(file.object.value(name), &(examples.*list.member));
        if (!reason.isEmpty())
            *error = QStringLiteral("%1, \"%2\": %3").arg(path, name, reason);
    }
    return examples;
}

bool write(const QString& path, const HoleExamples& examples, QString* error)
{
    if (examples.isEmpty()) {
        QFile file(path);
        const bool gone = !file.exists() || file.remove();
        if (!gone)
            *error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return gone;
    }
    QJsonObject object;
    for (const List& list : lists) {
        QJsonArray entries;
        for (const HoleExample& example : examples.*list.member)
            entries.append(entryOf(example));
        object.insert(QLatin1String(list.name), entries);
    }
    return HomeFiles::writeJson(path, object, error);
}

} // namespace ExampleFile
