#pragma once

#include "GeometryDatabaseExport.h"

#include <QtCore/qglobal.h>

namespace Ovra::Geo
{

/// \brief One face of one element, as the solver input names it.
///
/// A plain value: owns nothing. Comparisons ignore fluidInterface_.
class OVRA_GEO_EXPORT ElementFaceData
{
public:
    /// \brief Same element and same local face.
    bool operator==(const ElementFaceData& other) const;

    /// \brief By element id, then by local face.
    bool operator<(const ElementFaceData& other) const;

    /// \brief Id of the element.
    int elementId_ = 0;

    /// \brief Local face number, see Utility::getLocalFaceIndex(); -1 means none.
    int localFace_ = -1;

    /// \brief Whether the face lies between fluids.
    bool fluidInterface_ = false;
};

/// \brief Hash for Qt's containers, consistent with ElementFaceData::operator==.
OVRA_GEO_EXPORT uint qHash(const ElementFaceData& data);

} // namespace Ovra::Geo
