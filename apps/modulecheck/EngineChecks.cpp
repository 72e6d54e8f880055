#include "Checks.h"
#include "Contract.h"

#include <valvecell/Extension.h>
#include <valvecell/IConcurrentCalls.h>
#include <valvecell/IEngine.h>
#include <valvecell/ResultKeys.h>

#include <QThread>

namespace {

using Contract::gray;
using Contract::linger;

constexpr int answerMs = 10000;

/// What the engine answers. The tasks of a solution have numbers, which its results follow.
class Answers
{
public:
    explicit Answers(Subject& subject)
        : m_subject(subject)
        , m_arrivals(subject, "result callback")
    {
    }

    void run(IEngine& engine, quint64 task, const QImage& image, const QString& solution)
    {
        pictures.keep(QStringLiteral("the image of a task"), image);
        m_subject.call("runTask()", atOnceMs, [&] {
            engine.runTask({{QString::fromLatin1(ResultKeys::originImage), image}}, solution, QStringLiteral("auto"),
                           [this, task, solution](const QVariantMap& result) { take(solution, task, result); });
        });
    }
    /// Runs so many tasks, and faults what is not answered, or in another order.
    void runAndExpect(IEngine& engine, const QString& solution, int tasks)
    {
        QVector<quint64> wanted;
        for (int task = 1; task <= tasks; ++task) {
            wanted.append(quint64(task));
            run(engine, quint64(task), gray(), solution);
        }
        waitFor(solution, tasks);
        if (of(solution).size() == tasks && of(solution) != wanted)
            m_subject.fault(QStringLiteral("the results of one solution come in another order than its tasks"));
    }
    bool waitFor(const QString& solution, int tasks) const
    {
        return Subject::waitFor([&] { return of(solution).size() >= tasks; }, answerMs);
    }
    QVector<quint64> of(const QString& solution) const { return m_arrivals.of(solution); }
    QVariantMap last() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_last;
    }
    void end() { m_arrivals.end("the engine was deleted"); }

    Contract::Pictures pictures;

private:
    void take(const QString& solution, quint64 task, const QVariantMap& result)
    {
        if (QThread::currentThread() == m_caller)
            m_subject.fault(QStringLiteral("the result callback is called on the caller's thread"));
        if (m_arrivals.of(solution).contains(task))
            m_subject.fault(QStringLiteral("a task is answered twice"));
        if (result[QLatin1String(ResultKeys::solutionName)].toString() != solution)
            m_subject.fault(QStringLiteral("a result names solution \"%1\" instead of its own, so that it is dropped")
                                .arg(result[QLatin1String(ResultKeys::solutionName)].toString()));
        const QVariant found = result[QLatin1String(ResultKeys::algoResult)];
        const QVariant angle = found.toMap()[QLatin1String(ResultKeys::angle)];
        if (found.isValid() && angle.userType() != QMetaType::Double)
            m_subject.fault(QStringLiteral("\"AlgoResult\" has no \"angle\" of the type double, so that it is 365"));
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_last = result;
        }
        m_arrivals.add(solution, task);
    }

    Subject& m_subject;
    const QThread* const m_caller = QThread::currentThread();
    Contract::Arrivals m_arrivals;
    mutable std::mutex m_mutex; // protects the following
    QVariantMap m_last;
};

std::unique_ptr<IEngine> initialised(Subject& subject)
{
    return Contract::bringUp<IEngine>(subject, "initialise()", [](IEngine& made) { made.initialise(); });
}

QStringList solutionsOf(Subject& subject, IEngine& engine)
{
    ITaskList* list = nullptr;
    QStringList solutions;
    subject.call("taskList()", atOnceMs, [&] { list = engine.taskList(); });
    if (!list)
        subject.fault(QStringLiteral("taskList() returns null"));
    else
        subject.call("taskList()->list()", atOnceMs, [&] { solutions = list->list(); });
    if (list && solutions.isEmpty())
        subject.note(QStringLiteral("there is no solution; --home names a home with some"));
    return solutions;
}

QString firstSolution(Subject& subject, IEngine& engine)
{
    return solutionsOf(subject, engine).value(0, QStringLiteral("none"));
}

void checkEngineLife(Subject& subject)
{
    Contract::live(subject, [&] {
        auto engine = initialised(subject);
        if (!engine)
            return false;
        Contract::refuseStrangers(subject, *engine);
        firstSolution(subject, *engine);
        Contract::destroy(subject, engine);
        return true;
    });
}

void checkTasks(Subject& subject)
{
    Answers answers(subject);
    auto engine = initialised(subject);
    if (!engine)
        return;
    const QString solution = firstSolution(subject, *engine);
    constexpr int tasks = 5;
    answers.runAndExpect(*engine, solution, tasks);
    if (answers.of(solution).size() < tasks)
        subject.fault(QStringLiteral("%1 tasks, %2 answers").arg(tasks).arg(answers.of(solution).size()));
    linger(500); // for answers too many
    Contract::destroy(subject, engine);
    answers.pictures.compare(subject);
}

/// Pictures that are answered nevertheless, whatever they are.
void checkOddImages(Subject& subject)
{
    const struct
    {
        const char* name;
        QImage image;
    } oddities[] = {{"a null image", QImage()},
                    {"an image of 1 x 1", gray(1, 1)},
                    {"an image of 16 bits", gray(641, 479, QImage::Format_Grayscale16)},
                    {"an image of 3 x 2001", gray(3, 2001, QImage::Format_RGB888)},
                    {"an image with transparency", gray(333, 222, QImage::Format_ARGB32_Premultiplied)}};
    Answers answers(subject);
    auto engine = initialised(subject);
    if (!engine)
        return;
    const QString solution = firstSolution(subject, *engine);
    int task = 0;
    for (const auto& odd : oddities) {
        const int before = answers.of(solution).size();
        answers.run(*engine, quint64(++task), odd.image, solution);
        if (!answers.waitFor(solution, before + 1))
            subject.fault(QStringLiteral("%1 is not answered").arg(QLatin1String(odd.name)));
    }
    Contract::destroy(subject, engine);
}

void checkUnknownSolution(Subject& subject)
{
    Answers answers(subject);
    auto engine = initialised(subject);
    if (!engine)
        return;
    const QString unknown = QStringLiteral("nobody's");
    answers.run(*engine, 1, gray(), unknown);
    if (!answers.waitFor(unknown, 1))
        subject.fault(QStringLiteral("an unknown solution is not answered"));
    else if (answers.last().contains(QString::fromLatin1(ResultKeys::algoResult)))
        subject.fault(QStringLiteral("an unknown solution is answered with \"AlgoResult\""));
    Contract::destroy(subject, engine);
}

void checkDeletion(Subject& subject)
{
    Answers answers(subject);
    auto engine = initialised(subject);
    if (!engine)
        return;
    const QString solution = firstSolution(subject, *engine);
    for (quint64 task = 1; task <= 20; ++task)
        answers.run(*engine, task, gray(), solution);
    Contract::destroy(subject, engine, "the destructor with tasks in hand");
    answers.end();
    linger(500);
}

void checkConcurrentTasks(Subject& subject)
{
    Answers answers(subject);
    auto engine = initialised(subject);
    if (!engine)
        return;
    const QStringList solutions = solutionsOf(subject, *engine);
    if (extensionOf<IConcurrentCalls>(engine.get())) {
        constexpr int tasks = 5;
        const QString two[] = {solutions.value(0, QStringLiteral("none")), solutions.value(1, QStringLiteral("other"))};
        Contract::sideBySide([&](int i) { answers.runAndExpect(*engine, two[i], tasks); },
                             [&] { Contract::linger(1); });
        for (const QString& solution : two) {
            if (answers.of(solution).size() < tasks)
                subject.fault(QStringLiteral("%1 tasks on a thread of its own, %2 answers")
                                  .arg(tasks)
                                  .arg(answers.of(solution).size()));
        }
    }
    Contract::destroy(subject, engine);
}

} // namespace

namespace Checks {

QVector<Check> ofEngine()
{
    return {
        {"life", Subject::Engine, checkEngineLife},      {"tasks", Subject::Engine, checkTasks},
        {"odd images", Subject::Engine, checkOddImages}, {"unknown solution", Subject::Engine, checkUnknownSolution},
        {"deletion", Subject::Engine, checkDeletion},    {"threads", Subject::Engine, checkConcurrentTasks}};
}

} // namespace Checks
