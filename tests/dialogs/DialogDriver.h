#pragma once

#include "dialogs/fields/QuestionStrip.h"

#include <QAbstractButton>
#include <QDir>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTranslator>
#include <QWidget>
#include <QtTest>

#include <memory>
#include <vector>

/// Operates a dialog by the names of its controls, with real clicks and keys.
class DialogDriver
{
public:
    explicit DialogDriver(QWidget& dialog)
        : m_dialog(dialog)
    {
    }

    template <typename Widget>
    Widget* get(const char* name) const
    {
        auto* found = m_dialog.findChild<Widget*>(QLatin1String(name));
        if (!found)
            qFatal("no control %s", name);
        return found;
    }

    void press(const char* name) const
    {
        auto* button = get<QAbstractButton>(name);
        QVERIFY2(button->isVisible(), name);
        // Near the left end: a check box may be wider than what can be clicked.
        QTest::mouseClick(button, Qt::LeftButton, {}, {8, button->height() / 2});
    }
    bool canPress(const char* button) const { return get<QAbstractButton>(button)->isEnabled(); }
    bool isChecked(const char* box) const { return get<QAbstractButton>(box)->isChecked(); }

    void type(const char* field, const QString& text) const
    {
        auto* edit = get<QLineEdit>(field);
        edit->setFocus();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QInputMethodEvent typed; // letters of any script, as they come from an input method
        typed.setCommitString(text);
        QCoreApplication::sendEvent(edit, &typed);
    }
    template <typename Widget = QLineEdit>
    QString text(const char* name) const
    {
        return get<Widget>(name)->text();
    }

    /// What the dialog tells, without the marks for line breaks.
    QString message(const char* label = "message") const { return get<QLabel>(label)->text().remove(QChar(0x200b)); }

    /// The sentence of an open question; empty while nothing is asked.
    QString question() const
    {
        return get<QuestionStrip>("question")->isVisible() ? get<QLabel>("question")->text() : QString();
    }

    /// Texts that are cut off because their control is too small for them, so that nobody has to look for them.
    QStringList clipped() const
    {
        QStringList names;
        const auto labels = m_dialog.findChildren<QLabel*>();
        for (const QLabel* label : labels) {
            if (label->isVisible() && !label->wordWrap() && label->width() < label->sizeHint().width())
                names.append(label->objectName());
        }
        const auto buttons = m_dialog.findChildren<QAbstractButton*>();
        for (const QAbstractButton* button : buttons) {
            if (button->isVisible() && button->width() < button->minimumSizeHint().width())
                names.append(button->objectName());
        }
        return names;
    }

    /// Whatever still reads Chinese, as far as the dialog itself says it; names that a plant gave lie in lists and
    /// tables.
    QStringList chinese() const
    {
        static const QRegularExpression han(QStringLiteral("\\p{Han}"));
        QStringList texts{m_dialog.windowTitle()};
        const auto widgets = m_dialog.findChildren<QWidget*>();
        for (const QWidget* widget : widgets) {
            for (const char* property : {"text", "title", "accessibleName"}) {
                if (!qobject_cast<const QLineEdit*>(widget) || property == QByteArray("accessibleName"))
                    texts << widget->property(property).toString();
            }
        }
        return texts.filter(han);
    }

    void shoot(const QString& name) const
    {
        const QString folder = QStringLiteral(VALVECELL_BIN_DIR "/../screenshots");
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(m_dialog.grab().save(QStringLiteral("%1/%2.png").arg(folder, name)));
    }

private:
    QWidget& m_dialog;
};

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
