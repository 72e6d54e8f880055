#pragma once

#include "licence/Licence.h"

#include <functional>
#include <optional>

/// The licence of this program on this machine: one file, judged with one key. One thread.
class Registration
{
public:
    struct Setting
    {
        QString file;         ///< where the licence lies
        QByteArray publicKey; ///< PEM; licences signed by its counterpart count
        /// The code of this machine, empty when it has none; nothing until it has been found out.
        std::optional<QString> machine;
        /// How many stations the cell runs, at the moment of asking.
        std::function<int()> stations = [] { return 1; };
        std::function<QDate()> today = [] { return QDate::currentDate(); };
    };

    explicit Registration(Setting setting);

    QString machine() const { return m_setting.machine.value_or(QString()); }
    bool isMachineKnown() const { return m_setting.machine.has_value(); }
    void setMachine(const QString& code) { m_setting.machine = code; }
    /// Where the licence that was there before the last one lies.
    QString previousFile() const;

    /// Judges the licence that the file holds now; blanks and lines around it count for nothing, see
    /// LicenceText::tidied().
    LicenceVerdict present() const;
    /// Remembers the time beside the licence. Returns what was remembered before when the clock was put back behind it,
    /// else a time that is not valid.
    QDateTime noteTime(const QDateTime& now) const;
    /// Judges a text as it was pasted or read from somewhere; nothing is stored.
    LicenceVerdict judge(const QByteArray& text) const;
    /// Stores a text that judge() finds good; what the file held is kept in previousFile(). Anything else changes
    /// nothing. `error` (never null) is empty unless the files cannot be written; the old licence is then unchanged.
    LicenceVerdict submit(const QByteArray& text, QString* error);

private:
    LicenceVerdict check(const QByteArray& text) const;
    QByteArray stored() const;
    bool store(const QByteArray& text, QString* error) const;

    Setting m_setting;
    const Rsa::PublicKey m_key;
};

/// The public key (PEM) that the licences of this build are checked with. It is a part of the program: no file, setting
/// or variable can put another in its place.
QByteArray builtInLicenceKey();
/// Whether that key is a vendor's; any other build has one of its own, whose licences nobody sold.
bool isVendorLicenceKey();
