#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QTranslator>

#include <memory>
#include <vector>

/// Switches the program to English for as long as it lives.
class English
{
public:
    English()
    {
        const QDir folder(QStringLiteral(VALVECELL_BIN_DIR "/language/English"));
        const QStringList files = folder.entryList({QStringLiteral("*.qm")});
        for (const QString& file : files) {
            auto translator = std::make_unique<QTranslator>();
            if (translator->load(folder.filePath(file)) && QCoreApplication::installTranslator(translator.get()))
                m_translators.push_back(std::move(translator));
        }
    }

    explicit operator bool() const { return !m_translators.empty(); }

private:
    std::vector<std::unique_ptr<QTranslator>> m_translators;
};
