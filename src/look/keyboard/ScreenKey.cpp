#include "look/keyboard/ScreenKey.h"

#include <QCoreApplication>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(ScreenKey)
};

using Row = QVector<ScreenKey>;

Row typed(const QString& faces)
{
    Row row;
    for (const QChar face : faces) {
        const bool isPlain = face.unicode() < 0x80;
        row.append({ScreenKey::Type, face, isPlain ? face.toUpper().unicode() : int(Qt::Key_unknown)});
    }
    return row;
}

ScreenKey erase(int width)
{
    return {ScreenKey::Press, Tr::tr("退格"), Qt::Key_Backspace, width};
}

ScreenKey nextField(int width)
{
    return {ScreenKey::Press, Tr::tr("下一项"), Qt::Key_Tab, width};
}

ScreenKey enter(int width)
{
    return {ScreenKey::Press, Tr::tr("回车"), Qt::Key_Return, width};
}

ScreenKey hide(int width)
{
    return {ScreenKey::Hide, Tr::tr("收起"), 0, width};
}

QVector<Row> numbers()
{
    return {typed(QStringLiteral("789")) << erase(3), typed(QStringLiteral("456")) << nextField(3),
            typed(QStringLiteral("123")) << hide(3), typed(QStringLiteral("-0.")) << enter(3)};
}

ScreenKey arrow(const char* face, int key)
{
    return {ScreenKey::Press, QString::fromUtf8(face), key};
}

/// The digits, then ten, ten and seven characters.
QVector<Row> letters(bool capitals)
{
    QString faces = QStringLiteral("qwertyuiopasdfghjkl-zxcvbnm");
    if (capitals)
        faces = faces.toUpper();
    return {typed(QStringLiteral("1234567890")), typed(faces.left(10)), typed(faces.mid(10, 10)),
            Row{{ScreenKey::Shift, Tr::tr("大写"), 0, 3}} << typed(faces.mid(20)) << erase(3),
            Row{{ScreenKey::Turn, QStringLiteral("#+=")}, arrow("←", Qt::Key_Left), arrow("→", Qt::Key_Right)}};
}

QVector<Row> symbols()
{
    return {typed(QStringLiteral("1234567890")), typed(QStringLiteral("@#$%&*()_+")),
            typed(QStringLiteral("!\"':;/\\?=,")),
            Row{{ScreenKey::Type, QStringLiteral("`"), Qt::Key_QuoteLeft, 3}} << typed(QStringLiteral("<>[]|~^"))
                                                                              << erase(3),
            Row{{ScreenKey::Turn, QStringLiteral("abc")}} << typed(QStringLiteral("{}"))};
}

} // namespace

QVector<QVector<ScreenKey>> keysOf(KeyPage page)
{
    if (page == KeyPage::Numbers)
        return numbers();
    QVector<Row> rows = page == KeyPage::Symbols ? symbols() : letters(page == KeyPage::Capitals);
    rows.last() << ScreenKey{ScreenKey::Type, QStringLiteral(" "), Qt::Key_Space, 4} << typed(QStringLiteral("."))
                << nextField(3) << enter(3) << hide(2);
    return rows;
}
