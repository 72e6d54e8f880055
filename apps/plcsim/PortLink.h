#pragma once

#include <QString>

/// A name that leads to a device for as long as the object lives: a symbolic link. A link that an earlier run left
/// behind is replaced; a file that is none, or a link to something other than a device, is never touched.
class PortLink
{
public:
    explicit PortLink(QString path);
    ~PortLink();
    Q_DISABLE_COPY(PortLink)

    bool point(const QString& device, QString* error);
    /// Takes the link away, unless another has turned it to its own device meanwhile.
    void remove();

private:
    /// Whether the link still leads to the device that it was turned to.
    bool isOurs() const;
    /// Whether nothing, or only a link to a device, stands in the way.
    bool mayReplace() const;

    const QString m_path;
    QString m_device;
};
