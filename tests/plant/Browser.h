#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <unistd.h>

/// A headless Chromium that is driven over pipes.
class Browser : private QProcess
{
public:
    explicit Browser(const QString& program)
    {
        if (pipe2(m_in, O_CLOEXEC) != 0 || pipe2(m_out, O_CLOEXEC) != 0)
            return;
        setStandardErrorFile(nullDevice());
        start(program, {"--headless=new", "--no-sandbox", "--disable-gpu", "--remote-debugging-pipe",
                        "--user-data-dir=" + m_profile.path(), "about:blank"});
        const QJsonArray targets = call("Target.getTargets", {})["targetInfos"].toArray();
        for (const QJsonValue& target : targets)
            if (target["type"].toString() == "page")
                m_session =
                    call("Target.attachToTarget", {{"targetId", target["targetId"]}, {"flatten", true}})["sessionId"]
                        .toString();
    }
    ~Browser() override
    {
        kill();
        waitForFinished();
        for (const int pipe : {m_in[0], m_in[1], m_out[0], m_out[1]})
            ::close(pipe);
    }

    void open(const QString& address) { call("Page.navigate", {{"url", address}}); }
    void resize(int width, int height)
    {
        call("Emulation.setDeviceMetricsOverride",
             {{"width", width}, {"height", height}, {"deviceScaleFactor", 1}, {"mobile", width < 600}});
    }
    QJsonValue value(const QString& script)
    {
        return call("Runtime.evaluate",
                    {{"expression", script}, {"awaitPromise", true}, {"returnByValue", true}})["result"]["value"];
    }

protected:
    void setupChildProcess() override
    {
        // By way of numbers that are neither: a pipe may be 3 or 4 itself.
        dup2(m_in[0], 33);
        dup2(m_out[1], 34);
        dup2(33, 3);
        dup2(34, 4);
    }

private:
    QJsonValue call(const char* method, QJsonObject parameters)
    {
        QJsonObject message{{"id", ++m_number}, {"method", method}, {"params", parameters}};
        if (!m_session.isEmpty())
            message["sessionId"] = m_session;
        const QByteArray line = QJsonDocument(message).toJson(QJsonDocument::Compact) + '\0';
        if (::write(m_in[1], line.constData(), size_t(line.size())) < 0)
            return {};
        while (true) {
            for (int end = m_read.indexOf('\0'); end >= 0; end = m_read.indexOf('\0')) {
                const QJsonObject answer = QJsonDocument::fromJson(m_read.left(end)).object();
                m_read.remove(0, end + 1);
                if (answer["id"].toInt() == m_number)
                    return answer["result"];
            }
            char bytes[65536];
            const ssize_t count = ::read(m_out[0], bytes, sizeof bytes);
            if (count <= 0)
                return {};
            m_read.append(bytes, int(count));
        }
    }

    QTemporaryDir m_profile;
    int m_in[2] = {};
    int m_out[2] = {};
    QByteArray m_read;
    QString m_session;
    int m_number = 0;
};
