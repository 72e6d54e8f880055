#pragma once

#include <QByteArray>
#include <QTranslator>

/// One translation file, held in memory, so that a file which is replaced while the program runs changes nothing in it.
class Catalogue : public QTranslator
{
public:
    ~Catalogue() override;

    /// False when the file is no translation or a damaged one.
    bool read(const QString& path);

private:
    QByteArray m_bytes;
};
