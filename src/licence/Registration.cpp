#include "licence/Registration.h"

#include <valvecell/HomeFiles.h>

Registration::Registration(Setting setting)
    : m_setting(std::move(setting))
    , m_key(m_setting.publicKey)
{
}

QString Registration::previousFile() const
{
    return m_setting.file + QStringLiteral(".previous");
}

LicenceVerdict Registration::check(const QByteArray& text) const
{
    return checkLicence(text, m_key, {machine(), m_setting.today(), m_setting.stations()});
}

/// One byte more than a licence has is enough to see that a file holds none.
QByteArray Registration::stored() const
{
    QFile file(m_setting.file);
    return !HomeFiles::isNoFile(m_setting.file) && file.open(QIODevice::ReadOnly) ? file.read(LicenceText::maxBytes + 1)
                                                                                  : QByteArray();
}

LicenceVerdict Registration::present() const
{
    return check(LicenceText::tidied(stored()));
}

QDateTime Registration::noteTime(const QDateTime& now) const
{
    constexpr int toleratedSeconds = 15 * 60;
    const auto key = QStringLiteral("utc");
    const QString path = m_setting.file + QStringLiteral(".seen");
    const QDateTime seen = QDateTime::fromString(HomeFiles::readJson(path).object.value(key).toString(), Qt::ISODate);
    QString error;
    if (!HomeFiles::writeJson(path, {{key, now.toUTC().toString(Qt::ISODate)}}, &error))
        qWarning("%s", qUtf8Printable(error));
    return seen.isValid() && now.secsTo(seen) > toleratedSeconds ? seen : QDateTime();
}

LicenceVerdict Registration::judge(const QByteArray& text) const
{
    return check(LicenceText::tidied(text));
}

LicenceVerdict Registration::submit(const QByteArray& text, QString* error)
{
    error->clear();
    const QByteArray plain = LicenceText::tidied(text);
    LicenceVerdict verdict = check(plain);
    if (verdict.isGood())
        store(plain, error);
    return verdict;
}

bool Registration::store(const QByteArray& text, QString* error) const
{
    const QByteArray before = stored();
    if (before == text)
        return true;
    return (before.isEmpty() || HomeFiles::writeFile(previousFile(), before, error)) &&
           HomeFiles::writeFile(m_setting.file, text, error);
}
