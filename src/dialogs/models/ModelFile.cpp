#include "dialogs/models/ModelFile.h"

#include <valvecell/HomeFiles.h>

#include <algorithm>

namespace {

constexpr qint64 largestFile = 1024 * 1024; // thousands of times what a model needs
constexpr int formatVersion = 1;
const QString formatName = QStringLiteral("valvecell-model");

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(ModelFile)
};

bool refuse(const QString& path, const QString& why, QString* error)
{
    *error = Tr::tr("%1：%2").arg(QFileInfo(path).fileName(), why);
    return false;
}

bool isPlainValue(const QJsonValue& value)
{
    return value.isDouble() || value.isBool() || value.isString();
}

/// False when something in it is no map of plain values.
bool readParameters(const QJsonObject& solutions, SolutionParameters* parameters)
{
    for (auto solution = solutions.begin(); solution != solutions.end(); ++solution) {
        const QJsonObject values = solution.value().toObject();
        if (values.isEmpty() || !std::all_of(values.begin(), values.end(), isPlainValue))
            return false;
        parameters->insert(solution.key(), values.toVariantMap());
    }
    return true;
}

} // namespace

bool ModelFile::read(const QString& path, ModelFile* file, QString* error)
{
    if (QFileInfo(path).size() > largestFile)
        return refuse(path, Tr::tr("文件太大，不是型号文件"), error);
    const HomeFiles::JsonRead json = HomeFiles::readJson(path);
    if (json.state != HomeFiles::JsonRead::Good) {
        *error = json.error;
        return false;
    }
    const QJsonObject& object = json.object;
    if (object.value(QLatin1String("format")) != formatName)
        return refuse(path, Tr::tr("不是型号文件"), error);
    if (object.value(QLatin1String("version")).toInt() != formatVersion)
        return refuse(path, Tr::tr("型号文件的版本不被支持"), error);
    const QJsonValue parameters = object.value(QLatin1String("parameters"));
    ModelFile found;
    found.entry = {object.value(QLatin1String("name")).toString(), object.value(QLatin1String("plcIndex")).toInt(),
                   object.value(QLatin1String("calibrated")).toBool()};
    if (!parameters.isObject() || !readParameters(parameters.toObject(), &found.parameters))
        return refuse(path, Tr::tr("参数部分有误"), error);
    *file = found;
    return true;
}

bool ModelFile::write(const QString& path, QString* error) const
{
    QJsonObject solutions;
    for (auto it = parameters.begin(); it != parameters.end(); ++it)
        solutions.insert(it.key(), QJsonObject::fromVariantMap(it.value()));
    const QJsonObject object{{QStringLiteral("format"), formatName},
                             {QStringLiteral("version"), formatVersion},
                             {QStringLiteral("name"), entry.name},
                             {QStringLiteral("plcIndex"), entry.index},
                             {QStringLiteral("calibrated"), entry.calibrated},
                             {QStringLiteral("parameters"), solutions}};
    return HomeFiles::writeFile(path, QJsonDocument(object).toJson(QJsonDocument::Indented), error);
}
