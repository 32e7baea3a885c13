#pragma once

#include "AbaqusLexer.h"
#include "AbaqusPart.h"
#include "AbaqusPlacement.h"
#include "UnknownKinds.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

namespace Ovra::GeoTool
{

/// \brief Reads the mesh of an Abaqus input file into Gmsh's current model.
///
/// Gmsh of this generation writes the format but does not read it. What is read:
///
/// | Keyword | Parameters |
/// |---|---|
/// | *NODE | NSET, SYSTEM=C, INPUT |
/// | *ELEMENT | TYPE, ELSET, INPUT |
/// | *ELSET, *NSET | GENERATE, INSTANCE, INTERNAL, INPUT |
/// | *PART, *ASSEMBLY, *INSTANCE | NAME, PART; numbers and names count within each |
/// | *INCLUDE | INPUT |
/// | *SOLID SECTION and others | ELSET, MATERIAL |
///
/// Keywords that make or move nodes and elements by rule, such as *NGEN, are refused; all others
/// are passed over with their data. Node sets are read and checked, and not taken over.
class AbaqusReader
{
public:
    explicit AbaqusReader(const QString& path);

    /// \brief Makes nodes, entities, elements and groups in Gmsh; see AbaqusEntities.
    /// \return what the user should know of the file, a sentence each
    ///
    /// Throws ToolError: InputDamaged with the line that is wrong, Unsuitable with the keyword or
    /// the number of elements of each type that has no counterpart, InputMissing for a file that is
    /// included.
    QStringList read();

private:
    using Action = void (AbaqusReader::*)();

    void parse();
    void beginKeyword();
    static Action actionAt(const QByteArray& keyword);
    static Action actionOn(const QByteArray& keyword);
    void refuseKeyword();
    void beginNodes();
    void beginElements();
    void beginElementSet();
    void beginNodeSet();
    void beginSet(AbaqusSets& sets, const QByteArray& parameter);
    void beginPart();
    void endPart();
    void beginInstance();
    void endInstance();
    void beginSection();
    void takeNode();
    void takeElement();
    void takeElementSet();
    void takeNodeSet();
    void takeMembers(AbaqusSets& sets, const QByteArray& parameter);
    void takePlacement();
    AbaqusSets::Range generated() const;
    AbaqusPart& part();
    Geo::Vector vectorAt(qsizetype first) const;
    QByteArray requiredValue(const QByteArray& parameter) const;
    void requireOutside() const;
    void requireWholeElement();
    void requireEnd();
    int number(const QByteArray& field) const;
    double real(const QByteArray& field) const;
    void requireKnownNodes() const;
    [[noreturn]] void failOnNode(const AbaqusPart& body, const AbaqusPart::Element& element,
                                 int node) const;
    void standPartsWithoutAssembly();
    QStringList partsLeftOut() const;

    enum class Scope
    {
        Model,
        Part,
        Instance
    };

    QString path_;
    AbaqusLexer lexer_;
    Scope scope_ = Scope::Model;
    AbaqusElementType type_; ///< of the present *ELEMENT
    AbaqusPlacement placement_;
    int placementLines_ = 0;
    UnknownKinds unknownKinds_;
    std::vector<AbaqusPart> parts_;
    std::vector<AbaqusPart> bodies_; ///< what is outside of parts, then the instances
    QHash<QByteArray, int> partByKey_;
    QHash<QByteArray, int> instancesOf_; ///< number by key of the part
};

} // namespace Ovra::GeoTool
