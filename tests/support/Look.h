#pragma once

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QtTest>

/// What a look at a window would find, so that nobody has to look at every size in every language.
namespace Look {

inline QString nameOf(const QWidget* widget)
{
    return widget->objectName().isEmpty() ? QString::fromLatin1(widget->metaObject()->className())
                                          : widget->objectName();
}

/// Texts that are cut off because their control is too small for them.
inline QStringList clipped(const QWidget& window)
{
    QStringList names;
    for (const QLabel* label : window.findChildren<QLabel*>()) {
        if (!label->isVisible() || label->text().isEmpty())
            continue;
        const bool wraps = label->wordWrap();
        if (wraps ? label->height() < label->heightForWidth(label->width())
                  : label->width() < label->sizeHint().width())
            names << nameOf(label);
    }
    for (const QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
        if (button->isVisible() && button->width() < button->minimumSizeHint().width())
            names << nameOf(button);
    }
    for (const QGroupBox* box : window.findChildren<QGroupBox*>()) {
        if (box->isVisible() && box->width() < box->fontMetrics().horizontalAdvance(box->title()))
            names << nameOf(box);
    }
    return names;
}

/// Controls of the same parent that lie over each other.
inline QStringList overlapping(const QWidget& window)
{
    QStringList found;
    const auto widgets = window.findChildren<QWidget*>();
    for (const QWidget* a : widgets) {
        if (!a->isVisible() || a->isWindow() || qobject_cast<QAbstractScrollArea*>(a->parentWidget()))
            continue;
        for (const QWidget* b : widgets) {
            if (a->testAttribute(Qt::WA_TransparentForMouseEvents) ||
                b->testAttribute(Qt::WA_TransparentForMouseEvents))
                continue; // lies over others on purpose
            const bool siblings = a < b && a->parentWidget() == b->parentWidget() && b->isVisible() && !b->isWindow();
            if (siblings && a->geometry().intersects(b->geometry()))
                found << nameOf(a) + QStringLiteral(" lies over ") + nameOf(b);
        }
    }
    return found;
}

/// Whatever reads Chinese, as far as the window itself says it; names that a plant gave lie in lists and tables.
inline QStringList chinese(const QWidget& window)
{
    static const QRegularExpression han(QStringLiteral("\\p{Han}"));
    QStringList texts{window.windowTitle()};
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (widget->parentWidget()->inherits("QTabBar"))
            continue; // buttons that Qt names once
        for (const char* property : {"text", "title", "accessibleName"}) {
            if (!qobject_cast<const QLineEdit*>(widget) || property == QByteArray("accessibleName"))
                texts << widget->property(property).toString();
        }
    }
    return texts.filter(han);
}

/// Keeps a picture of the window in screenshots/ of the build folder.
inline void shoot(QWidget& window, const QString& name)
{
    const QString folder = QStringLiteral(VALVECELL_BIN_DIR "/../screenshots");
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(window.grab().save(QStringLiteral("%1/%2.png").arg(folder, name)));
}

} // namespace Look
