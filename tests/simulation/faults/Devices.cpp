#include "Devices.h"

#include <valvecell/ResultKeys.h>

#include <QImage>
#include <QPointF>

#include <cmath>
#include <cstring>
#include <stdexcept>

namespace Simulation {

void Later::at(qint64 ms, std::function<void()> what)
{
    m_timers.remove_if([](const auto& timer) { return !timer->isActive(); });
    m_timers.push_back(m_scheduler.timer(Scheduler::SingleShot, std::move(what)));
    m_timers.back()->start(static_cast<int>(qMax<qint64>(0, ms)));
}

Cameras::Cameras(Ledger& ledger, Later& later, bool numbered)
    : m_ledger(ledger)
    , m_later(later)
    , m_numbered(numbered)
{
}

void* Cameras::extension(const char* id)
{
    return m_numbered && qstrcmp(id, ICameraCapture::id) == 0 ? static_cast<ICameraCapture*>(this) : nullptr;
}

QImage Cameras::pictureOf(int number)
{
    QImage picture(8, 8, QImage::Format_Grayscale8);
    picture.fill(Qt::gray);
    std::memcpy(picture.bits(), &number, sizeof number);
    return picture;
}

int Cameras::numberOf(const QImage& picture)
{
    int number = 0;
    if (!picture.isNull())
        std::memcpy(&number, picture.constBits(), sizeof number);
    return number;
}

void Cameras::trigger(const QStringList& keys)
{
    for (const QString& key : keys)
        capture(key, 0);
}

void Cameras::capture(const QString& key, quint64 number)
{
    m_isAskedByNumber = number > 0;
    if (Part* const part = m_ledger.captureStarted(key))
        play(*part, number);
}

void Cameras::play(Part& part, quint64 number)
{
    const QString key = part.camera;
    const int picture = part.picture;
    const int ms = part.fate.pictureMs;
    const auto good = [this, key, number, picture] { deliver(key, number, picture); };
    switch (part.fate.picture) {
    case Picture::Good:
        return m_later.at(ms, good);
    case Picture::Late:
        return m_later.at(part.deadlineMs - m_ledger.ms() + 5 * ms, good);
    case Picture::Lost:
        return;
    case Picture::Null:
        return m_later.at(ms, [this, key, number, picture] {
            m_ledger.captureEnded(picture, false);
            number > 0 ? m_captured({key, number, {}, {}}) : m_image(key, {});
        });
    case Picture::Refused:
        return m_later.at(ms, [this, key, number, picture] {
            m_ledger.captureEnded(picture, false);
            refuse(key, number, QStringLiteral("没有图像"));
        });
    case Picture::Throws:
        throw std::runtime_error("the driver has lost its device");
    case Picture::Doubled:
        m_later.at(ms, good);
        return number > 0 ? m_later.at(ms + ms % 7, good) : void();
    case Picture::Foreign:
        if (number > 0)
            m_later.at(ms / 2, [this, key, number] { m_captured({key, number + 1000, pictureOf(0), {}}); });
        else
            m_later.at(ms / 2, [this] { m_image(QStringLiteral("cam9"), pictureOf(0)); });
        return m_later.at(ms, good);
    }
}

void Cameras::deliver(const QString& key, quint64 number, int picture)
{
    m_ledger.captureEnded(picture, true);
    if (number > 0)
        m_captured({key, number, pictureOf(picture), {}});
    else
        m_image(key, pictureOf(picture));
}

void Cameras::refuse(const QString& key, quint64 number, const QString& why)
{
    if (number > 0)
        m_captured({key, number, {}, why});
    else
        m_notify(QStringLiteral("noImage"), QVariantMap{{"camera", key}, {"message", why}});
}

/// Of a camera without numbers that owes a picture it would pass for that one.
void Cameras::stray(const QString& key)
{
    if (m_isAskedByNumber || m_ledger.isIdle(key))
        m_image(key, pictureOf(0));
}

namespace {

QVariantMap resultOf(const Part& part, const QString& solution, const QString& model)
{
    QVariantMap answer{{ResultKeys::angle, Ledger::angleOf(part.picture)},
                       {ResultKeys::error, 0},
                       {ResultKeys::score, 0.9},
                       {ResultKeys::image, Cameras::pictureOf(part.picture)},
                       {ResultKeys::centerPoint, QPointF(Ledger::xOf(part.picture), Ledger::yOf(solution, model))}};
    QVariantMap result{{ResultKeys::originImage, Cameras::pictureOf(part.picture)},
                       {ResultKeys::solutionName, solution},
                       {ResultKeys::taskName, model},
                       {ResultKeys::taskTime, 5.0},
                       {ResultKeys::taskCali, part.fate.answer != Answer::NotTaught}};
    switch (part.fate.answer) {
    case Answer::NothingFound:
        answer = {{ResultKeys::angle, 361.0}, {ResultKeys::error, 2}, {ResultKeys::resultTip, "没有孔"}};
        break;
    case Answer::NoSolution:
        result.remove(ResultKeys::solutionName);
        break;
    case Answer::OtherSolution:
        result[ResultKeys::solutionName] = solution.endsWith('1') ? QStringLiteral("工位2") : QStringLiteral("工位1");
        break;
    case Answer::TextAngle:
        answer[ResultKeys::angle] = QStringLiteral("forty-two");
        break;
    case Answer::NotANumber:
        answer[ResultKeys::angle] = std::nan("");
        break;
    case Answer::FarAway:
        answer[ResultKeys::centerPoint] = QPointF(1e9, 0);
        break;
    default:
        break;
    }
    if (part.fate.answer != Answer::NoTask)
        result.insert(ResultKeys::algoResult, answer);
    return result;
}

} // namespace

void Engine::runTask(const QVariantMap& input, const QString& solution, const QString& model, ResultCallback callback)
{
    const int picture = Cameras::numberOf(input.value(ResultKeys::originImage).value<QImage>());
    if (const Part* const part = m_ledger.inspected(picture, solution, model))
        play(*part, solution, model, callback);
}

void Engine::play(const Part& part, const QString& solution, const QString& model, const ResultCallback& callback)
{
    const Answer answer = part.fate.answer;
    const auto give = [this, callback, answer, number = part.number, result = resultOf(part, solution, model)] {
        m_ledger.answered(number, answer);
        callback(result);
    };
    const int ms = part.fate.answerMs;
    switch (answer) {
    case Answer::Lost:
        return;
    case Answer::Throws:
        throw std::runtime_error("the engine has no licence");
    case Answer::Late:
        return m_later.at(part.deadlineMs - m_ledger.ms() + ms, give);
    case Answer::Doubled:
        m_later.at(ms + ms % 7, give);
        break;
    default:
        break;
    }
    m_later.at(ms, give);
}

void Port::send(const SComFrame& frame, quint64 session)
{
    if (session == m_ledger.line && m_ledger.line != 0)
        m_ledger.sent(frame);
}

SerialStatus Port::status() const
{
    SerialStatus status;
    status.open = m_ledger.line != 0;
    status.lastError = status.open ? QString() : QStringLiteral("the cable is out");
    return status;
}

void* Port::extension(const char* id)
{
    if (qstrcmp(id, ISerialSession::id) == 0)
        return static_cast<ISerialSession*>(this);
    return qstrcmp(id, ISerialStatus::id) == 0 ? static_cast<ISerialStatus*>(this) : nullptr;
}

QString Modules::start(const CameraCallbacks& callbacks)
{
    m_cameras.setImageCallback(callbacks.image);
    m_cameras.setNotificationCallback(callbacks.notification);
    m_cameras.setCaptureCallback(callbacks.capture);
    return {};
}

} // namespace Simulation
