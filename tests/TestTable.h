#pragma once

#include <QtTest>

/// The table of a data-driven test: columns by their names, then rows whose values are converted to
/// the columns' types.
template <class... Types> class TestTable {
public:
    template <class... Names> explicit TestTable(Names... columns)
    {
        (QTest::addColumn<Types>(columns), ...);
    }
    void operator()(const char *name, const Types &...values) const
    {
        QTestData &row = QTest::newRow(name);
        (row << ... << values);
    }
};
