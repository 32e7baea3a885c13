#pragma once

#include "ModelEntity.h"

namespace Ovra::Geo
{

/// \file
/// \brief When model entities compute the values that they keep of their mesh. Not for hosts.

/// \brief Calls compute() if \p entity has children and the call has not been made before; never
///        again afterwards, however the mesh changes.
/// \param entity whose mesh data are asked for
/// \param valid,compute whether the call has been made, and the call
template <typename Compute>
void computeMeshDataOnce(const ModelEntity& entity, bool& valid, Compute compute)
{
    if (!valid && entity.childCount() != 0) {
        compute();
        valid = true;
    }
}

} // namespace Ovra::Geo
