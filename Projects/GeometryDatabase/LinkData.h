#pragma once

#include "GeometryDatabaseExport.h"

#include <QtCore/qglobal.h>

#include <array>

namespace Ovra::Geo
{

/// \brief The interpolation stencil of one mesh vertex: up to four other vertices and their
///        weights.
///
/// Four is the most that an element face has; nothing checks it. A plain value: owns nothing.
/// Comparisons look at nodeId_ alone.
class OVRA_GEO_EXPORT LinkData
{
public:
    /// \brief Same node.
    bool operator==(const LinkData& other) const;

    /// \brief By node id.
    bool operator<(const LinkData& other) const;

    /// \brief Orders the valid entries by ascending id, the weights with them; equal ids keep their
    ///        order.
    void sort();

    /// \brief Id of the mesh vertex that the stencil belongs to.
    int nodeId_ = 0;

    /// \brief Number of valid entries of the arrays, at most 4.
    int linkCount_ = 0;

    /// \brief Ids of the linked mesh vertices.
    std::array<int, 4> linkIds_ = {};

    /// \brief Weight of the vertex at the same index.
    std::array<double, 4> linkWeights_ = {};
};

/// \brief Hash for Qt's containers, consistent with LinkData::operator==.
OVRA_GEO_EXPORT uint qHash(const LinkData& data);

} // namespace Ovra::Geo
