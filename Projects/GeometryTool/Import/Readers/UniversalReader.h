#pragma once

#include "NumberedMesh.h"
#include "UnknownKinds.h"

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>
#include <QStringList>

#include <vector>

namespace Ovra::GeoTool
{

/// \brief Reads the mesh and the groups of a universal file into Gmsh's current model.
///
/// | Data sets | Content |
/// |---|---|
/// | 15, 781, 2411 | nodes |
/// | 2412 | elements; the table of physical properties is the reference |
/// | 2435, 2452, 2467, 2477 | groups, four numbers for each member |
/// | 2417, 2429, 2430, 2432 | groups, two numbers for each member |
///
/// All others are passed over. Gmsh of this generation loses most forms of groups.
class UniversalReader
{
public:
    explicit UniversalReader(const QString& path);

    /// \brief Makes nodes, entities, elements and groups in Gmsh; see NumberedMesh.
    /// \return what the user should know of the file, a sentence each
    ///
    /// Throws ToolError: InputDamaged with the line that is wrong, Unsuitable with the number of
    /// elements of each type that has no counterpart.
    QStringList read();

private:
    void parse();
    void readDataset(int number);
    void readNodes(bool inOneLine);
    void readElements();
    void readElement(const QList<QByteArray>& record);
    std::vector<qint64> readElementNodes(int descriptor, qint64 count);
    void readGroups(qsizetype width);
    void readGroup(const QList<QByteArray>& record, qsizetype width);
    void skip();
    bool nextRecord(QList<QByteArray>& fields);
    QList<QByteArray> line();
    qint64 number(const QByteArray& field) const;
    double real(const QByteArray& field) const;
    QStringList remarks(const QStringList& emptyGroups) const;
    [[noreturn]] void fail(const QString& what) const;

    QFile file_;
    int line_ = 0;
    NumberedMesh mesh_;
    qint64 singleNodes_ = 0; ///< elements of one node
    UnknownKinds unknownKinds_;
    QStringList nodeGroups_;
    QStringList conditionSets_; ///< data sets of boundary conditions
};

} // namespace Ovra::GeoTool
