#pragma once

#include "CgnsFile.h"
#include "CgnsNames.h"
#include "ZoneLayout.h"
#include "ZoneLinks.h"

#include <QByteArray>
#include <QString>

#include <map>
#include <vector>

namespace Ovra::GeoTool
{

class CaseView;

/// \brief Puts zones and what connects them into a CGNS file.
class CgnsWriter
{
public:
    CgnsWriter(const CaseView& view, const ZoneLayout& layout, const ZoneLinks& links,
               CgnsFile& file);

    void write();

private:
    /// The numbers of the elements of a patch, from 1 in its zone.
    struct Range
    {
        cgsize_t first = 0;
        cgsize_t last = 0;
    };

    void writeFamilies();
    void writeZone(std::size_t zone);
    void writeCoordinates(const Zone& zone);
    void writeSections(const Zone& zone, CgnsNames& names);
    void writeSection(const ZoneSection& section, const QByteArray& name);
    void writeConditions(std::size_t position);
    void writeLinks(std::size_t zone);
    void writeLink(const ZoneLink& link, const QByteArray& name);
    void writePeriodic(const ZoneLink& link, int connection);
    void writeElementFields(const Zone& zone);
    void writeVertexFields(const Zone& zone);
    int addSolution(const char* name, CGNS_ENUMT(GridLocation_t) location);
    void writeField(int solution, const char* name, const std::vector<int>& values);
    void writeAttributes(const Geo::ModelEntity& entity);
    int writeFaces(const ZoneLink& link, const QByteArray& name, const char* donorName);
    const Range& rangeOf(int zone, const ZonePatch* patch) const;
    void nameZones();
    void numberPatches();
    QString nameOf(const Zone& zone) const;
    QString nameOf(const ZoneSection& section) const;
    CGNS_ENUMT(GridLocation_t) sideLocation() const;
    static std::vector<cgsize_t> numbersOf(const Zone& zone, const std::vector<int>& vertices);
    std::vector<cgsize_t> connectivity(const ZoneSection& section) const;

    const CaseView& view_;
    const ZoneLayout& layout_;
    const ZoneLinks& links_;
    CgnsFile& file_;
    std::vector<cgsize_t> nodeOf_; ///< by vertex, from 1 in the zone in hand
    CgnsNames names_;              ///< of zones and families
    std::vector<QByteArray> zoneNames_;
    std::map<QString, QByteArray> families_; ///< by the name of the faces
    int zone_ = 0;                           ///< in hand, from 1
    cgsize_t nextElement_ = 1;
    std::vector<std::vector<Range>> ranges_; ///< of the patches of each zone
};

} // namespace Ovra::GeoTool
