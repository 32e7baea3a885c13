#pragma once

#include "CaseLines.h"

#include <QTest>

#include <vector>

/// \brief Rows of a test for the formats of Gmsh of which an import makes the case again, with the
/// parts of it that come back.
namespace ReturningFormats
{

struct Row
{
    const char* suffix;
    CaseLines::Parts parts;
};

/// \brief All of them, as users are told.
inline const std::vector<Row>& all()
{
    static const std::vector<Row> rows = {
        {"msh", {true, true, true, 0}},   {"msh2", {true, true, false, 0}},
        {"unv", {true, true, false, 1}},  {"inp", {false, true, false, 1}},
        {"bdf", {true, true, false, 1}},  {"nas", {true, true, false, 1}},
        {"mesh", {true, true, false, 1}},
    };
    return rows;
}

inline void addColumns()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<CaseLines::Parts>("parts");
}

inline void addRow(const Row& row)
{
    QTest::newRow(row.suffix) << row.suffix << row.parts;
}

inline void addAll()
{
    addColumns();
    for (const Row& row : all()) {
        addRow(row);
    }
}

} // namespace ReturningFormats
