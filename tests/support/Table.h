#pragma once

#include <QtTest>

#include <tuple>

/// A test's table: Table::of<int, QString>({{"name of the row", 1, "one"}, ...}) where QTest asks for its rows, and
/// const auto [number, text] = Table::row<int, QString>() in the test itself.
namespace Table {

constexpr const char* kColumns[] = {"1", "2", "3", "4", "5", "6", "7"};

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
    (QTest::addColumn<Types>(kColumns[i++]), ...);
}

template <typename... Types>
void of(const std::initializer_list<Row<Types...>>& rows)
{
    columns<Types...>();
    for (const auto& row : rows)
        std::apply([&](const auto&... cells) { (QTest::newRow(row.name) << ... << cells); }, row.values);
}

template <typename... Types>
std::tuple<Types...> row()
{
    int i = 0;
    return std::tuple<Types...>{*static_cast<Types*>(QTest::qData(kColumns[i++], qMetaTypeId<Types>()))...};
}

} // namespace Table
