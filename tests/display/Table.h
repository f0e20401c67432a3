#pragma once

#include <QtTest>

#include <tuple>

namespace window {

/// A table: the names of its columns, then rows of a name and a value for each column.
template <class... Values>
void table(const QVector<const char *> &columns,
           std::initializer_list<std::tuple<const char *, Values...>> rows)
{
    int column = 0;
    (QTest::addColumn<Values>(columns[column++]), ...);
    for (const auto &row : rows) {
        std::apply([](const char *name,
                      const Values &...values) { (QTest::newRow(name) << ... << values); },
                   row);
    }
}

} // namespace window
