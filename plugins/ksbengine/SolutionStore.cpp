#include "SolutionStore.h"

#include "ExampleFile.h"

#include <valvecell/HomeFiles.h>

#include <QDebug>
#include <QUrl>

namespace {

const QString solutionFile = QStringLiteral("solution.json");
const QString modelSuffix = QStringLiteral(".model.json");
const QString exampleSuffix = QStringLiteral(".examples.json");
constexpr int longestName = 80; // characters; stays below every file system's limit in bytes

bool keepsInFileName(QChar c)
{
    return c.isLetterOrNumber() || c.isSurrogate() || c == QLatin1Char(' ') || c == QLatin1Char('-') ||
           c == QLatin1Char('_') || c == QLatin1Char('.');
}

QString escaped(QChar c)
{
    QString text;
    for (const char byte : QString(c).toUtf8())
        text += QStringLiteral("%%1").arg(static_cast<uchar>(byte), 2, 16, QLatin1Char('0')).toUpper();
    return text;
}

QString nameOf(const QString& fileName)
{
    return QUrl::fromPercentEncoding(fileName.toUtf8());
}

QString exampleFile(QString modelFile)
{
    modelFile.chop(modelSuffix.size());
    return modelFile + exampleSuffix;
}

QString text(const QJsonObject& object, const QString& key, const QString& fallback)
{
    return object.value(key).toString(fallback);
}

} // namespace

SolutionStore::SolutionStore(const QString& folder)
    : m_folder(folder)
{
}

QString SolutionStore::fileName(const QString& name)
{
    QString file;
    for (int i = 0; i < name.size(); ++i) {
        const bool atEnd = i == 0 || i + 1 == name.size();
        if (keepsInFileName(name[i]) && !(atEnd && name[i] == QLatin1Char('.')))
            file += name[i];
        else
            file += escaped(name[i]);
    }
    return file;
}

bool SolutionStore::isValidName(const QString& name, QString* error)
{
    const bool valid = !name.trimmed().isEmpty() && name == name.trimmed() && name.size() <= longestName;
    if (!valid)
        *error = tr("“%1”：名称应为 1 到 %2 个字符，首尾不能有空格").arg(name).arg(longestName);
    return valid;
}

void SolutionStore::read()
{
    m_solutions.clear();
    for (const QString& folder : QDir(m_folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
        readSolution(m_folder + QLatin1Char('/') + folder);
}

void SolutionStore::readSolution(const QString& folder)
{
    const QString path = folder + QLatin1Char('/') + solutionFile;
    const HomeFiles::JsonRead read = HomeFiles::readJson(path);
    const bool damaged = read.state == HomeFiles::JsonRead::Damaged;
    if (damaged)
        qWarning("solution without answers: %s", qUtf8Printable(read.error));
    else if (read.state == HomeFiles::JsonRead::Missing)
        qWarning("solution left with its defaults: %s", qUtf8Printable(read.error));
    const QString name = text(read.object, QStringLiteral("name"), nameOf(QFileInfo(folder).fileName()));
    if (m_solutions.contains(name)) {
        qWarning("%s: a solution \"%s\" was read already, this one is left out", qUtf8Printable(path),
                 qUtf8Printable(name));
        return;
    }
    Solution& solution = m_solutions[name];
    solution.folder = folder;
    const QJsonValue result = read.object.value(QStringLiteral("result"));
    const QString answer = result.isUndefined() ? QStringLiteral("hole") : result.toVariant().toString();
    solution.answer = answer == QLatin1String("hub") ? Answer::Hub : Answer::Hole;
    if (damaged)
        solution.trouble = tr("方案文件损坏：%1").arg(read.error);
    if (answer != QLatin1String("hub") && answer != QLatin1String("hole")) {
        solution.trouble = tr("方案文件 %1：“result”的值“%2”不是 hole 或 hub").arg(path, answer);
        qWarning("%s: \"result\" is \"%s\", not \"hole\" or \"hub\"; no task is answered", qUtf8Printable(path),
                 qUtf8Printable(answer));
    }
    solution.camera = readCamera(read.object.value(QStringLiteral("camera")).toObject(), path);
    for (const QString& file : QDir(folder).entryList({QLatin1Char('*') + modelSuffix}, QDir::Files, QDir::Name))
        readModel(folder + QLatin1Char('/') + file, &solution);
}

/// A value that is no number in its range counts as unknown.
finder::Camera SolutionStore::readCamera(const QJsonObject& camera, const QString& file)
{
    const auto number = [&](const char* name, double least, double most) {
        const QJsonValue value = camera.value(QLatin1String(name));
        const double given = value.toDouble(most + 1);
        if (value.isUndefined() || (given >= least && given <= most))
            return value.toDouble(0);
        qWarning("%s: \"%s\" of the camera is no number from %g to %g; it counts as unknown", qUtf8Printable(file),
                 name, least, most);
        return 0.0;
    };
    return {{number("principal_x", 0, 100000), number("principal_y", 0, 100000)},
            number("distance_mm", 0, 100000),
            number("mm_per_pixel", 0, 100)};
}

void SolutionStore::readModel(const QString& file, Solution* solution)
{
    const HomeFiles::JsonRead read = HomeFiles::readJson(file);
    QString error = read.error;
    finder::HoleModel model;
    if (read.state != HomeFiles::JsonRead::Good ||
        !finder::applyParameters(read.object.toVariantMap(), &model, &error)) {
        qWarning("model left out: %s: %s", qUtf8Printable(file), qUtf8Printable(error));
        return;
    }
    QString stem = QFileInfo(file).fileName();
    stem.chop(modelSuffix.size());
    const QString name = text(read.object, QStringLiteral("name"), nameOf(stem));
    if (isBuiltIn(name) || solution->models.contains(name)) {
        qWarning("%s: there is a model \"%s\" already, this one is left out", qUtf8Printable(file),
                 qUtf8Printable(name));
        return;
    }
    solution->models.insert(name, model);
    solution->files.insert(name, file);
    readExamples(name, solution);
}

void SolutionStore::readExamples(const QString& model, Solution* solution)
{
    QString error;
    auto examples =
        std::make_shared<finder::HoleExamples>(ExampleFile::read(exampleFile(solution->files.value(model)), &error));
    if (!error.isEmpty()) {
        qWarning("examples left out: %s", qUtf8Printable(error));
        solution->exampleTroubles.insert(model, error);
    }
    if (!examples->isEmpty())
        solution->models[model].examples = std::move(examples);
}

QStringList SolutionStore::list()
{
    return m_solutions.keys();
}

QStringList SolutionStore::models(const QString& solution)
{
    const auto it = m_solutions.constFind(solution);
    if (it == m_solutions.constEnd())
        return {};
    QStringList names = it->models.keys();
    names.append(finder::autoModelName());
    names.sort();
    return names;
}

bool SolutionStore::isBuiltIn(const QString& model)
{
    return model == finder::autoModelName();
}

bool SolutionStore::lookUp(const QString& solution, const QString& model, finder::HoleModel* parameters,
                           Answer* answer) const
{
    const auto found = m_solutions.constFind(solution);
    if (found == m_solutions.constEnd())
        return false;
    *answer = found->answer;
    if (model == finder::autoModelName()) {
        *parameters = finder::autoModel();
        parameters->camera = found->camera;
        return true;
    }
    const auto known = found->models.constFind(model);
    if (known == found->models.constEnd())
        return false;
    *parameters = *known;
    parameters->camera = found->camera;
    return true;
}

QString SolutionStore::trouble(const QString& solution) const
{
    return m_solutions.value(solution).trouble;
}

QVariantMap SolutionStore::parameters(const QString& solution, const QString& model)
{
    finder::HoleModel known;
    Answer answer = Answer::Hole;
    return lookUp(solution, model, &known, &answer) ? finder::parametersOf(known) : QVariantMap();
}

QString SolutionStore::modelFile(const Solution& solution, const QString& model) const
{
    return solution.files.value(model, solution.folder + QLatin1Char('/') + fileName(model) + modelSuffix);
}

bool SolutionStore::saveModel(const QString& solution, const QString& model, const QVariantMap& parameters,
                              QString* error)
{
    QString reason;
    QString* const why = error ? error : &reason;
    const auto found = m_solutions.find(solution);
    if (found == m_solutions.end() || isBuiltIn(model)) {
        *why = isBuiltIn(model) ? tr("“%1”是内置型号，不能修改").arg(model) : tr("没有方案“%1”").arg(solution);
        return false;
    }
    finder::HoleModel changed;
    if (!isValidName(model, why) || !finder::applyParameters(parameters, &changed, why))
        return false;
    QVariantMap stored = finder::parametersOf(changed);
    stored.insert(QStringLiteral("name"), model);
    const QString file = modelFile(*found, model);
    if (!HomeFiles::writeJson(file, QJsonObject::fromVariantMap(stored), why))
        return false;
    const auto before = found->models.constFind(model);
    const bool isNew = before == found->models.constEnd();
    if (!isNew)
        changed.examples = before->examples;
    found->models.insert(model, changed);
    found->files.insert(model, file);
    if (isNew)
        readExamples(model, &*found); // those of a model whose file was damaged
    return true;
}

bool SolutionStore::removeModel(const QString& solution, const QString& model, QString* error)
{
    QString reason;
    QString* const why = error ? error : &reason;
    const auto found = m_solutions.find(solution);
    if (found == m_solutions.end() || !found->models.contains(model)) {
        *why = tr("方案“%2”中没有可删除的型号“%1”").arg(model, solution);
        return false;
    }
    const QString path = modelFile(*found, model);
    QFile file(path);
    if (file.exists() && !file.remove()) {
        *why = QStringLiteral("%1: %2").arg(file.fileName(), file.errorString());
        return false;
    }
    QFile shown(exampleFile(path));
    if (shown.exists() && !shown.remove())
        qWarning("examples of a removed model stay: %s: %s", qUtf8Printable(shown.fileName()),
                 qUtf8Printable(shown.errorString()));
    found->models.remove(model);
    found->files.remove(model);
    found->exampleTroubles.remove(model);
    return true;
}

std::shared_ptr<const finder::HoleExamples> SolutionStore::examples(const QString& solution, const QString& model) const
{
    return m_solutions.value(solution).models.value(model).examples;
}

QString SolutionStore::exampleTrouble(const QString& solution, const QString& model) const
{
    return m_solutions.value(solution).exampleTroubles.value(model);
}

bool SolutionStore::setExamples(const QString& solution, const QString& model, const finder::HoleExamples& examples,
                                QString* error)
{
    const auto found = m_solutions.find(solution);
    if (found == m_solutions.end() || !found->models.contains(model)) {
        *error = isBuiltIn(model) ? tr("“%1”是内置型号，不能修改").arg(model)
                                  : tr("方案“%1”中没有型号“%2”").arg(solution, model);
        return false;
    }
    const QString file = exampleFile(modelFile(*found, model));
    const bool damaged = found->exampleTroubles.contains(model) && QFile::exists(file);
    if (damaged && HomeFiles::keepAside(file).isEmpty()) {
        *error = QStringLiteral("%1: damaged, and cannot be renamed to keep it").arg(file);
        return false;
    }
    if (!ExampleFile::write(file, examples, error))
        return false;
    found->exampleTroubles.remove(model);
    found->models[model].examples =
        examples.isEmpty() ? nullptr : std::make_shared<const finder::HoleExamples>(examples);
    return true;
}

bool SolutionStore::addSolution(const QString& solution, QString* error)
{
    QString reason;
    QString* const why = error ? error : &reason;
    if (!isValidName(solution, why))
        return false;
    if (m_solutions.contains(solution)) {
        *why = tr("已有方案“%1”").arg(solution);
        return false;
    }
    const QString folder = m_folder + QLatin1Char('/') + fileName(solution);
    const QJsonObject content{{QStringLiteral("name"), solution}, {QStringLiteral("result"), QStringLiteral("hole")}};
    if (!HomeFiles::writeJson(folder + QLatin1Char('/') + solutionFile, content, why))
        return false;
    readSolution(folder);
    return true;
}
