#pragma once

#include <QTest>

#include <initializer_list>
#include <tuple>
#include <type_traits>

/// Checks the rows of a table until one fails, and tells its first column, which is its name. The columns are what
/// `check` takes.
template <typename... Columns>
void checkRows(void (*check)(Columns...), std::initializer_list<std::tuple<std::remove_cvref_t<Columns>...>> rows)
{
    for (const auto& row : rows) {
        std::apply(check, row);
        if (QTest::currentTestFailed())
            return qWarning("That was the row \"%s\".", std::get<0>(row));
    }
}

/// The same with a function of the test itself, for rows that need what it holds.
template <typename Test, typename... Columns>
void checkRows(Test* test, void (Test::*check)(Columns...),
               std::initializer_list<std::tuple<std::remove_cvref_t<Columns>...>> rows)
{
    for (const auto& row : rows) {
        std::apply([&](const auto&... columns) { (test->*check)(columns...); }, row);
        if (QTest::currentTestFailed())
            return qWarning("That was the row \"%s\".", std::get<0>(row));
    }
}
