#include "Checks.h"

#include <valvecell/IEngine.h>
#include <valvecell/ResultKeys.h>

#include <QImage>
#include <QThread>

#include <atomic>
#include <memory>
#include <mutex>

namespace {

constexpr int answerMs = 10000;
constexpr int quietTimeMs = 500;

/// The answers to the tasks, in the order in which they came.
struct Answers
{
    explicit Answers(Subject& subject)
        : m_subject(subject)
    {
    }

    void run(IEngine& engine, int task, const QImage& image, const QString& solution, const QString& model)
    {
        m_subject.call("runTask()", atOnceMs, [&] {
            engine.runTask({{QString::fromLatin1(ResultKeys::originImage), image}}, solution, model,
                           [this, task](const QVariantMap& result) { take(task, result); });
        });
    }
    QVector<int> tasks() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_tasks;
    }
    QVariantMap last() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_last;
    }

    std::atomic<bool> open{true};

private:
    void take(int task, const QVariantMap& result)
    {
        if (!open)
            m_subject.fault(QStringLiteral("a result arrives after the engine was deleted"));
        if (QThread::currentThread() == m_caller)
            m_subject.fault(QStringLiteral("the result callback is called on the caller's thread"));
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_tasks.contains(task))
            m_subject.fault(QStringLiteral("task %1 is answered twice").arg(task));
        m_tasks.append(task);
        m_last = result;
    }

    Subject& m_subject;
    const QThread* const m_caller = QThread::currentThread();
    mutable std::mutex m_mutex; // protects the following
    QVector<int> m_tasks;
    QVariantMap m_last;
};

QImage gray()
{
    QImage image(640, 480, QImage::Format_Grayscale8);
    image.fill(128);
    return image;
}

std::unique_ptr<IEngine> initialised(Subject& subject)
{
    std::unique_ptr<IEngine> engine(subject.make<IEngine>());
    if (engine && !subject.call("initialise()", 10000, [&] { engine->initialise(); }))
        engine.release();
    return engine;
}

QString firstSolution(Subject& subject, IEngine& engine)
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
    return solutions.value(0, QStringLiteral("none"));
}

void checkEngineLife(Subject& subject)
{
    for (int round = 0; round < 2; ++round) {
        auto engine = initialised(subject);
        if (!engine)
            return;
        void* strange = nullptr;
        subject.call("extension()", atOnceMs, [&] { strange = engine->extension("valvecell.nothing/1"); });
        if (strange)
            subject.fault(QStringLiteral("extension() answers to an id that there is not"));
        firstSolution(subject, *engine);
        subject.call("the destructor", 5000, [&] { engine.reset(); });
    }
}

void checkTasks(Subject& subject)
{
    Answers answers(subject);
    auto engine = initialised(subject);
    if (!engine)
        return;
    const QString solution = firstSolution(subject, *engine);
    constexpr int tasks = 5;
    QVector<int> wanted;
    for (int task = 1; task <= tasks; ++task) {
        wanted.append(task);
        answers.run(*engine, task, gray(), solution, QStringLiteral("auto"));
    }
    if (!Subject::waitFor([&] { return answers.tasks().size() >= tasks; }, answerMs))
        subject.fault(QStringLiteral("%1 tasks, %2 answers").arg(tasks).arg(answers.tasks().size()));
    Subject::waitFor([] { return false; }, quietTimeMs); // for answers too many
    if (answers.tasks().size() == tasks && answers.tasks() != wanted)
        subject.fault(QStringLiteral("the results of one solution come in another order than its tasks"));
    subject.call("the destructor", 5000, [&] { engine.reset(); });
}

/// A task that cannot be run or judged is answered nevertheless.
void checkBadTask(Subject& subject, const QImage& image, const QString& solution, const char* what)
{
    Answers answers(subject);
    auto engine = initialised(subject);
    if (!engine)
        return;
    const QString named = solution.isEmpty() ? firstSolution(subject, *engine) : solution;
    answers.run(*engine, 1, image, named, QStringLiteral("auto"));
    if (!Subject::waitFor([&] { return !answers.tasks().isEmpty(); }, answerMs))
        subject.fault(QStringLiteral("%1 is not answered").arg(QLatin1String(what)));
    else if (!solution.isEmpty() && answers.last().contains(QString::fromLatin1(ResultKeys::algoResult)))
        subject.fault(QStringLiteral("%1 is answered with \"AlgoResult\"").arg(QLatin1String(what)));
    subject.call("the destructor", 5000, [&] { engine.reset(); });
}

void checkNullImage(Subject& subject)
{
    checkBadTask(subject, QImage(), QString(), "a null image");
}

void checkUnknownSolution(Subject& subject)
{
    checkBadTask(subject, gray(), QStringLiteral("nobody's"), "an unknown solution");
}

void checkDeletion(Subject& subject)
{
    Answers answers(subject);
    auto engine = initialised(subject);
    if (!engine)
        return;
    const QString solution = firstSolution(subject, *engine);
    for (int task = 1; task <= 20; ++task)
        answers.run(*engine, task, gray(), solution, QStringLiteral("auto"));
    subject.call("the destructor with tasks in hand", 5000, [&] { engine.reset(); });
    answers.open = false;
    Subject::waitFor([] { return false; }, quietTimeMs);
}

} // namespace

namespace Checks {

QVector<Check> ofEngine()
{
    return {{"life", Subject::Engine, checkEngineLife},
            {"tasks", Subject::Engine, checkTasks},
            {"null image", Subject::Engine, checkNullImage},
            {"unknown solution", Subject::Engine, checkUnknownSolution},
            {"deletion", Subject::Engine, checkDeletion}};
}

} // namespace Checks
