#include "Checks.h"
#include "CoreInbox.h"

#include <valvecell/Extension.h>
#include <valvecell/ICameraCapture.h>
#include <valvecell/ICameraPreview.h>
#include <valvecell/ICameraSettings.h>

#include <limits>

namespace {

using Contract::linger;

const char nobodys[] = "nobody's";

/// The numbers that were asked for, and what became of each.
class Captures
{
public:
    explicit Captures(Subject& subject)
        : m_subject(subject)
        , m_answers(subject, "capture callback")
    {
    }

    void connectTo(ICameraCapture& camera)
    {
        m_subject.call("setCaptureCallback()", atOnceMs, [&] {
            camera.setCaptureCallback([this](const ICameraCapture::Outcome& outcome) { take(outcome); });
        });
    }
    void ask(ICameraCapture& camera, const QString& key)
    {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_asked.insert(++m_last, key);
        }
        m_subject.call("capture()", atOnceMs, [&] { camera.capture(key, m_last); });
    }
    /// Each number that is not answered by then is a fault.
    void expectAll(const char* when, int ms)
    {
        Subject::waitFor([&] { return missing().isEmpty(); }, ms);
        for (const QString& key : missing().keys())
            m_subject.fault(QStringLiteral("camera \"%1\": %2 captures are not answered %3")
                                .arg(key)
                                .arg(missing().value(key))
                                .arg(QLatin1String(when)));
        m_answeredBefore = m_last;
    }
    void end() { m_answers.end("stop() returned"); }

    Contract::Pictures pictures;

private:
    void take(const ICameraCapture::Outcome& outcome)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const QString number = QString::number(outcome.number);
        if (!m_asked.contains(outcome.number)) {
            m_subject.fault(QStringLiteral("a number is answered that nobody asked for"));
            return;
        }
        const QString key = m_asked.value(outcome.number);
        if (key != outcome.cameraKey)
            m_subject.fault(
                QStringLiteral("a capture of camera \"%1\" is answered for camera \"%2\"").arg(key, outcome.cameraKey));
        if (!m_answers.of(number).isEmpty())
            m_subject.fault(QStringLiteral("a capture of camera \"%1\" is answered twice").arg(key));
        if (outcome.image.isNull() && outcome.problem.isEmpty())
            m_subject.fault(
                QStringLiteral("a capture of camera \"%1\" is answered with neither image nor problem").arg(key));
        if (key == QLatin1String(nobodys) && !outcome.image.isNull())
            m_subject.fault(QStringLiteral("a capture of an unknown camera is answered with an image"));
        pictures.keep(QStringLiteral("the image of a capture"), outcome.image);
        m_answers.add(number);
    }
    QMap<QString, int> missing() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        QMap<QString, int> missing;
        for (auto asked = m_asked.upperBound(m_answeredBefore); asked != m_asked.end(); ++asked) {
            if (m_answers.of(QString::number(asked.key())).isEmpty())
                ++missing[asked.value()];
        }
        return missing;
    }

    Subject& m_subject;
    Contract::Arrivals m_answers; ///< by number
    quint64 m_last = 4000000000;  // beyond what an int carries
    quint64 m_answeredBefore = 0;
    mutable std::mutex m_mutex; // protects the following
    QMap<quint64, QString> m_asked;
};

void checkCapture(Subject& subject)
{
    QStringList keys;
    auto core = CoreInbox::started(subject, &keys);
    if (!core)
        return;
    CoreInbox inbox(subject);
    inbox.connectTo(*core, keys);
    Captures captures(subject);
    if (auto* camera = extensionOf<ICameraCapture>(core.get())) {
        captures.connectTo(*camera);
        for (int round = 0; round < 3; ++round) {
            for (const QString& key : keys + QStringList{QLatin1String(nobodys)})
                captures.ask(*camera, key);
        }
        captures.expectAll("within 3 s", imageMs);
        for (int i = 0; i < 5 && !keys.isEmpty(); ++i)
            captures.ask(*camera, keys.constFirst());
        subject.call("stop() with captures in hand", 5000, [&] { core->stop(); });
        captures.expectAll("when stop() returned", 0);
        captures.end();
        if (inbox.images.count() > 0)
            subject.fault(QStringLiteral("the image callback hears of captures with a number"));
        linger();
        captures.pictures.compare(subject);
    }
    Contract::destroy(subject, core);
}

/// Values that no setting has.
QVariantList nonsenseFor(const QVariant& value)
{
    QVariantList nonsense{QVariantMap{{QStringLiteral("no"), QStringLiteral("value")}}};
    if (value.userType() == QMetaType::Double)
        nonsense << std::numeric_limits<double>::quiet_NaN() << -1e300;
    return nonsense;
}

/// Whether the settings are refused as they have to be.
void refuse(Subject& subject, ICameraSettings& cameras, const QString& key, const QVariantMap& settings,
            const QString& what)
{
    QString error;
    bool applied = false;
    subject.call("applySettings()", atOnceMs, [&] { applied = cameras.applySettings(key, settings, &error); });
    if (applied)
        subject.fault(QStringLiteral("applySettings() takes %1").arg(what));
    else if (error.trimmed().isEmpty())
        subject.fault(QStringLiteral("applySettings() refuses %1 without a sentence").arg(what));
}

void checkSettingsOf(Subject& subject, ICameraSettings& cameras, const QString& key)
{
    QVariantMap before;
    subject.call("settings()", atOnceMs, [&] { before = cameras.settings(key); });
    for (auto setting = before.constBegin(); setting != before.constEnd(); ++setting) {
        for (const QVariant& nonsense : nonsenseFor(setting.value()))
            refuse(subject, cameras, key, {{setting.key(), nonsense}},
                   QStringLiteral("nonsense for \"%1\"").arg(setting.key()));
        if (cameras.settings(key) == before)
            continue;
        subject.fault(QStringLiteral("nonsense for \"%1\" changes the settings").arg(setting.key()));
        QString error;
        cameras.applySettings(key, before, &error);
    }
}

void checkSettings(Subject& subject)
{
    QStringList keys;
    auto core = CoreInbox::started(subject, &keys);
    if (!core)
        return;
    if (auto* cameras = extensionOf<ICameraSettings>(core.get())) {
        CameraStatus status;
        subject.call("status() of an unknown camera", atOnceMs, [&] { status = cameras->status(nobodys); });
        if (status.type != CameraType::Unknown || status.state != CameraState::Uninitialized || !status.size.isEmpty())
            subject.fault(QStringLiteral("status() of an unknown camera is not a default status"));
        refuse(subject, *cameras, QLatin1String(nobodys), {{QStringLiteral("exposure_ms"), 5.0}},
               QStringLiteral("settings of an unknown camera"));
        for (const QString& key : qAsConst(keys)) {
            subject.call("status()", atOnceMs, [&] { status = cameras->status(key); });
            checkSettingsOf(subject, *cameras, key);
        }
    }
    CoreInbox::end(subject, core);
}

/// Asks for previews of a camera, and returns how many were granted.
int askPreviews(Subject& subject, ICameraPreview& cameras, const QString& key, int count, Contract::Arrivals& arrivals)
{
    int granted = 0;
    for (int i = 0; i < count; ++i) {
        bool given = false;
        subject.call("preview()", atOnceMs, [&] {
            given = cameras.preview(key, [&subject, &arrivals, key](const QImage& image, const QString& error) {
                if (image.isNull() == error.isEmpty())
                    subject.fault(QStringLiteral("a preview of camera \"%1\" has %2")
                                      .arg(key, image.isNull() ? QStringLiteral("neither image nor error")
                                                               : QStringLiteral("both an image and an error")));
                arrivals.add(key);
            });
        });
        granted += given ? 1 : 0;
    }
    return granted;
}

void checkPreview(Subject& subject)
{
    QStringList keys;
    auto core = CoreInbox::started(subject, &keys);
    if (!core)
        return;
    CoreInbox inbox(subject);
    inbox.connectTo(*core, keys);
    Contract::Arrivals arrivals(subject, "preview callback");
    if (auto* cameras = extensionOf<ICameraPreview>(core.get())) {
        if (askPreviews(subject, *cameras, QLatin1String(nobodys), 1, arrivals) > 0)
            subject.fault(QStringLiteral("preview() says that it captures with an unknown camera"));
        keys.removeDuplicates();
        QMap<QString, int> granted;
        for (const QString& key : qAsConst(keys))
            granted[key] = askPreviews(subject, *cameras, key, 2, arrivals);
        for (const QString& key : qAsConst(keys))
            Subject::waitFor([&] { return arrivals.of(key).size() >= granted[key]; }, imageMs);
        linger(350);
        for (const QString& key : qAsConst(keys))
            granted[key] += askPreviews(subject, *cameras, key, 1, arrivals);
        subject.call("stop() with previews in hand", 5000, [&] { core->stop(); });
        arrivals.end("stop() returned");
        for (const QString& key : qAsConst(keys)) {
            if (arrivals.of(key).size() != granted[key])
                subject.fault(QStringLiteral("camera \"%1\": %2 previews are granted, %3 come")
                                  .arg(key)
                                  .arg(granted[key])
                                  .arg(arrivals.of(key).size()));
        }
        if (inbox.images.count() > 0)
            subject.fault(QStringLiteral("the image callback is called for a preview"));
        linger(350);
    }
    Contract::destroy(subject, core);
}

} // namespace

namespace Checks {

QVector<Check> ofCameras()
{
    return {{"captures", Subject::CoreCtrl, checkCapture},
            {"settings", Subject::CoreCtrl, checkSettings},
            {"previews", Subject::CoreCtrl, checkPreview}};
}

} // namespace Checks
