#include "forward/ForwardLoop.h"

#include "db/log/LogLine.h"
#include "forward/BrokerSettings.h"
#include "forward/ForwardWords.h"
#include "forward/PlantWish.h"
#include "plant/PlantTopics.h"
#include "platform/System.h"

#include <QCoreApplication>
#include <QDateTime>

#include <numeric>

using PlantTopics::Kind;
using Sparkplug::Type;

namespace {

constexpr qint64 second = 1000000000; // ns
constexpr qint64 lookEvery = second / 4;
constexpr qint64 saveEvery = second / 2;
constexpr qint64 rowsReportEvery = 2 * second;
constexpr qint64 nobodyPause = 2 * second;
constexpr qint64 refusedPause = 30 * second;
constexpr qint64 twinTime = 90 * second;
constexpr qint64 twinBirthEvery = 30 * second;
constexpr qint64 openAgain = 10 * second;
constexpr int idleMs = 250;

} // namespace

ForwardLoop::ForwardLoop(QString home, const ForwardConfig& config)
    : m_home(std::move(home))
    , m_config(config)
    , m_pictures(m_home, m_config.pictureKilobytes, m_config.pictureWidth)
    , m_bucket(m_config.kilobytes * 1000., m_config.kilobytes * 1000.)
{
    m_clock.start();
    m_status.on = true;
    m_thread = std::thread([this] { run(); });
}

ForwardLoop::~ForwardLoop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_posted.notify_all();
    m_thread.join();
}

void ForwardLoop::post(std::function<void()> work)
{
    {
        const std::lock_guard lock(m_mutex);
        m_work.push_back(std::move(work));
    }
    m_posted.notify_all();
}

ForwardStatus ForwardLoop::status() const
{
    const std::lock_guard lock(m_mutex);
    return m_status;
}

void ForwardLoop::run()
{
    platform::lowerThreadPriority();
    QString problem;
    m_state = ForwardState::load(m_home, &problem);
    if (!problem.isEmpty())
        SystemLog::warning(ForwardWords::tr("转发记录损坏，已另存并重新开始：%1").arg(problem));
    m_sessions = m_state.sessions;
    m_streams.emplace_back(RowSource::parts(m_home), RowBatch::partsStream, m_state.streams[RowBatch::partsStream]);
    m_streams.emplace_back(RowSource::log(m_home), RowBatch::logStream, m_state.streams[RowBatch::logStream]);
    int waitMs = 0;
    while (takePosted(waitMs)) {
        step();
        waitMs = m_connected && m_bucket.msToWait() > 0 ? qMin(idleMs, m_bucket.msToWait()) : idleMs;
    }
    if (m_session)
        m_session->stop(true);
    takePosted(0); // what was acknowledged at last
    save(true);
    m_session.reset();
}

bool ForwardLoop::takePosted(int ms)
{
    std::vector<std::function<void()>> work;
    bool ending = false;
    {
        std::unique_lock lock(m_mutex);
        m_posted.wait_for(lock, std::chrono::milliseconds(ms), [this] { return m_ending || !m_work.empty(); });
        work.swap(m_work);
        ending = m_ending;
    }
    for (const auto& one : work)
        one();
    return !ending;
}

void ForwardLoop::open()
{
    m_nextOpening = nowNs() + openAgain;
    QString problem;
    m_options = BrokerSettings::read(m_config, m_home, &problem);
    setTrouble(problem, !problem.isEmpty());
    if (!problem.isEmpty())
        return;
    m_options.clientId = QStringLiteral("valvecell-%1-%2").arg(m_state.cellId, m_instance.left(8));
    const auto tell = [this](const char* name, const QString& value) {
        m_report.set({QLatin1String(name), Type::String, value});
    };
    tell("Properties/CellId", m_state.cellId);
    tell("Properties/Instance", m_instance);
    tell("Properties/Schema", QString::number(PlantTopics::schemaVersion));
    tell("Properties/Software", QCoreApplication::applicationVersion());
    save(true); // a cell that told its number keeps it
    m_session = std::make_unique<MqttSession>(handlers());
    m_session->start();
}

/// The session's thread only hands over.
MqttSession::Handlers ForwardLoop::handlers()
{
    return {[this] { return options(); }, [this](bool) { post([this] { onConnected(); }); },
            [this](const MqttTrouble& trouble) { post([this, trouble] { onDisconnected(trouble); }); },
            [this](const MqttMessage& message) { post([this, message] { onReceived(message); }); },
            [this](const QString& filter) {
                post([this, filter] {
                    setTrouble(ForwardWords::tr("代理服务器不允许订阅 %1，请检查权限").arg(filter), true);
                });
            }};
}

MqttOptions ForwardLoop::options()
{
    MqttOptions options = m_options;
    Sparkplug::Payload death;
    death.timestamp = QDateTime::currentMSecsSinceEpoch();
    death.seq = -1;
    death.metrics = {{QStringLiteral("bdSeq"), Type::UInt64, quint64(++m_sessions)},
                     {QStringLiteral("Properties/CellId"), Type::String, m_state.cellId}};
    options.will.topic = topic(int(Kind::Death));
    options.will.payload = Sparkplug::encode(death);
    return options;
}

QString ForwardLoop::topic(int kind, const QString& leaf) const
{
    return PlantTopics::text({Kind(kind), m_config.group, m_config.cell, leaf});
}

RowStream* ForwardLoop::stream(const QString& name)
{
    const auto found =
        std::find_if(m_streams.begin(), m_streams.end(), [&](const RowStream& one) { return one.name() == name; });
    return found == m_streams.end() ? nullptr : &*found;
}

qint64 ForwardLoop::waiting() const
{
    return std::accumulate(m_streams.begin(), m_streams.end(), qint64(0),
                           [](qint64 sum, const RowStream& stream) { return sum + stream.waiting(); });
}

void ForwardLoop::step()
{
    if (!m_session && nowNs() >= m_nextOpening)
        open();
    look();
    if (m_twinUntil > 0 && nowNs() >= m_twinUntil) {
        m_twinUntil = 0;
        setTrouble({}, false);
    }
    if (m_connected) {
        report();
        sendRows();
        sendPicture();
    }
    save(false);
    showStatus();
}

void ForwardLoop::look()
{
    if (nowNs() < m_nextLook)
        return;
    m_nextLook = nowNs() + lookEvery;
    for (RowStream& stream : m_streams)
        m_dirty |= stream.look();
}

/// The newest state before all rows.
void ForwardLoop::report()
{
    if (m_birthDue || nowNs() >= m_nextRowsReport) {
        m_nextRowsReport = nowNs() + rowsReportEvery;
        for (const RowStream& stream : m_streams) {
            const QString base = QStringLiteral("Rows/%1/").arg(stream.name());
            m_report.set({base + QStringLiteral("Epoch"), Type::String, stream.state().epoch});
            m_report.set({base + QStringLiteral("First"), Type::UInt64, quint64(stream.first())});
            m_report.set({base + QStringLiteral("Last"), Type::UInt64, quint64(stream.last())});
            m_report.set({base + QStringLiteral("Sent"), Type::UInt64, quint64(stream.state().row)});
        }
        m_report.set({QStringLiteral("Forward/Waiting"), Type::UInt64, quint64(waiting())});
    }
    const qint64 ms = QDateTime::currentMSecsSinceEpoch();
    const bool birth = m_birthDue || (m_twinUntil > nowNs() && nowNs() >= m_nextBirth);
    const Sparkplug::Payload payload = birth ? m_report.birth(ms, m_sessions) : m_report.changes(ms);
    if (payload.metrics.isEmpty())
        return;
    const QByteArray bytes = Sparkplug::encode(payload);
    m_bucket.take(bytes.size());
    m_session->publish({topic(int(birth ? Kind::Birth : Kind::Data)), bytes, 0, false, {}});
    if (birth)
        m_nextBirth = nowNs() + twinBirthEvery;
    m_birthDue = false;
}

void ForwardLoop::sendRows()
{
    if (nowNs() < m_pausedUntil || nowNs() < m_twinUntil)
        return;
    while (m_connected && m_bucket.isOpen(nowNs()) && sendOne()) {
    }
}

/// The streams by turns, and of each what was asked for by turns with what is new.
bool ForwardLoop::sendOne()
{
    for (std::size_t i = 0; i < 2 * m_streams.size(); ++i) {
        const std::size_t turn = m_turn++;
        RowStream& stream = m_streams[turn % m_streams.size()];
        const bool asked = turn / m_streams.size() % 2 == 1;
        if (asked ? stream.hasAsked() : stream.hasNext()) {
            const RowBatch batch = asked ? stream.nextAsked() : stream.next();
            if (batch.upTo > batch.after)
                return send(stream, batch, asked);
        }
    }
    return false;
}

bool ForwardLoop::send(RowStream& stream, const RowBatch& batch, bool asked)
{
    RowBatch own = batch;
    own.cellId = m_state.cellId;
    const QByteArray json = own.encode();
    const quint64 number = ++m_number;
    const QString name = stream.name();
    const auto done = [this, name, number](MqttDelivery how) {
        post([this, name, number, how] { delivered(name, number, how); });
    };
    if (!m_session->publish({topic(int(Kind::Rows), name), json, 1, false, {}}, done))
        return false;
    m_bucket.take(json.size());
    if (!asked) {
        stream.sent(number, batch.upTo);
        notePictures(own);
    }
    return true;
}

void ForwardLoop::notePictures(const RowBatch& batch)
{
    if (!m_config.pictures)
        return;
    for (const PlantPart& part : batch.parts) {
        if (part.picture && part.outcome != QLatin1String("found"))
            m_pictures.add(part.row, batch.epoch, stream(RowBatch::partsStream)->pictureOf(part.row), nowNs());
    }
}

void ForwardLoop::sendPicture()
{
    if (nowNs() < m_pausedUntil || nowNs() < m_twinUntil || !m_bucket.isOpen(nowNs()))
        return;
    std::optional<MqttMessage> picture = m_pictures.next(nowNs());
    if (!picture)
        return;
    picture->topic = topic(int(Kind::Picture));
    picture->properties.append({QStringLiteral("cellId"), m_state.cellId});
    m_bucket.take(picture->payload.size());
    m_session->publish(*picture);
}

void ForwardLoop::delivered(const QString& name, quint64 number, MqttDelivery how)
{
    RowStream& own = *stream(name);
    if (how == MqttDelivery::Taken) {
        m_dirty |= own.taken(number);
        if (!m_trouble.isEmpty() && m_twinUntil == 0)
            setTrouble({}, false);
        return;
    }
    own.rewind();
    if (how == MqttDelivery::NobodyThere) {
        m_pausedUntil = nowNs() + nobodyPause;
        setTrouble(ForwardWords::tr("代理服务器上还没有工厂端接收，记录留在本机等待"), false);
    } else if (how == MqttDelivery::Refused) {
        m_pausedUntil = nowNs() + refusedPause;
        setTrouble(ForwardWords::tr("代理服务器拒收记录，请检查主题 %1 的发布权限").arg(topic(int(Kind::Rows), name)),
                   true);
    }
}

void ForwardLoop::save(bool now)
{
    if (!now && (!m_dirty || nowNs() < m_nextSave))
        return;
    m_nextSave = nowNs() + saveEvery;
    m_state.sessions = m_sessions;
    for (const RowStream& stream : m_streams)
        m_state.streams[stream.name()] = stream.state();
    QString error;
    m_dirty = !m_state.save(m_home, &error);
    if (m_dirty)
        setTrouble(ForwardWords::tr("转发位置无法写入：%1").arg(error), true);
}

void ForwardLoop::showStatus()
{
    const std::lock_guard lock(m_mutex);
    m_status.connected = m_connected;
    m_status.waiting = waiting();
    m_status.trouble = m_trouble;
    m_status.wantsEngineer = m_wantsEngineer;
}

/// Each sentence once, until another takes its place: the log is forwarded, too.
void ForwardLoop::setTrouble(const QString& text, bool wantsEngineer)
{
    if (text == m_trouble)
        return;
    m_trouble = text;
    m_wantsEngineer = wantsEngineer;
    if (wantsEngineer)
        SystemLog::warning(ForwardWords::tr("转发：%1").arg(text));
}

void ForwardLoop::setFigures(const QVector<Sparkplug::Metric>& figures)
{
    for (const Sparkplug::Metric& figure : figures)
        m_report.set(figure);
}

void ForwardLoop::onConnected()
{
    m_connected = true;
    m_birthDue = true;
    m_pausedUntil = 0;
    m_nextLook = 0;
    m_dirty = true; // the session's number
    setTrouble({}, false);
    // A birth under this name that is not ours is another cell's.
    m_session->subscribe({topic(int(Kind::Command)), topic(int(Kind::Birth))}, true);
}

void ForwardLoop::onDisconnected(const MqttTrouble& trouble)
{
    m_connected = false;
    for (RowStream& stream : m_streams)
        stream.rewind();
    setTrouble(trouble.text, trouble.wantsEngineer());
}

void ForwardLoop::onReceived(const MqttMessage& message)
{
    const PlantWish wish = PlantWish::of(message);
    if (!wish.strange.isEmpty())
        return onStrange(wish.strange);
    m_birthDue |= wish.rebirth;
    if (wish.resend)
        stream(wish.resend->stream)->ask(*wish.resend);
    if (!wish.instance.isEmpty() && wish.instance != m_instance)
        onTwin(wish.cellId == m_state.cellId);
}

/// Both cells keep their rows until one has another name.
void ForwardLoop::onTwin(bool copied)
{
    m_twinUntil = nowNs() + twinTime;
    setTrouble(copied ? ForwardWords::tr("另一台设备使用本机工作目录的副本转发；请在副本中删除 user/forward.json")
                      : ForwardWords::tr("另一台单元也叫“%1/%2”；请为其中一台换名，记录暂留本机")
                            .arg(m_config.group, m_config.cell),
               true);
}

void ForwardLoop::onStrange(const QString& why)
{
    if (++m_strange == 1 || m_strange % 1000 == 0)
        SystemLog::warning(ForwardWords::tr("转发：丢弃了不明的消息（共 %1 条）：%2").arg(m_strange).arg(why));
}
