#pragma once

#include <QtTest>

#include <tuple>

/// A test's table: Table::of<int, QString>({{"name of the row", 1, "one"}, ...}) where QTest asks for its rows, and
/// const auto [number, text] = Table::row<int, QString>() in the test itself.
namespace Table {

constexpr const char* columnNames[] = {"1", "2", "3", "4", "5", "6", "7"};

template <typename... Types>
struct Row
{
    Row(const char* rowName, Types... cells)
        : name(rowName)
        , values(std::move(cells)...)
    {
    }
    const char* name;
    std::tuple<Types...> values;
};

template <typename... Types>
void columns()
{
    int i = 0;
    (QTest::addColumn<Types>(columnNames[i++]), ...);
}

template <typename... Types>
void of(const std::initializer_list<Row<Types...>>& rows)
{
    columns<Types...>();
    for (const auto& row : rows)
        std::apply([&](const auto&... cells) { (QTest::newRow(row.name) << ... << cells); }, row.values);
}

template <typename Type>
const Type& cell(int column)
{
    return *static_cast<Type*>(QTest::qData(columnNames[column], qMetaTypeId<Type>()));
}

template <typename... Types, std::size_t... Columns>
std::tuple<Types...> cells(std::index_sequence<Columns...>)
{
    return {cell<Types>(Columns)...};
}

template <typename... Types>
std::tuple<Types...> row()
{
    return cells<Types...>(std::index_sequence_for<Types...>());
}

} // namespace Table

/// Values as one text, "3|0.5|true": one comparison shows them all.
template <typename... Values>
QString told(const Values&... values)
{
    static_assert(((std::is_arithmetic_v<Values> || std::is_convertible_v<Values, QString>)&&...));
    QStringList texts;
    (texts << QVariant(values).toString(), ...);
    return texts.join('|');
}
