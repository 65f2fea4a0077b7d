#ifndef NODEBROWSER_TESTS_TESTTABLE_H
#define NODEBROWSER_TESTS_TESTTABLE_H

#include <QTest>

/// The columns of a data function: AddColumns<int, QString>("count", "text").
template <class... Types, class... Names>
void AddColumns(Names... names)
{
    (QTest::addColumn<Types>(names), ...);
}

/// A row with one value for each column; texts may be given as literals.
template <class... Values>
void AddRow(char const* name, Values const&... values)
{
    QTestData& row = QTest::newRow(name);
    (row << ... << values);
}

#endif
