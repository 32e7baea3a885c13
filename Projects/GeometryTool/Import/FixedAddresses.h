#pragma once

namespace Ovra::GeoTool::FixedAddresses
{

/// \brief Goes on in a process whose addresses are the same in every run.
///
/// Gmsh orders some of its work by addresses, in boundary layers for instance, so that nodes would
/// be numbered differently each time. Starts the same command anew with the random placing of
/// memory turned off, and returns where that is so already or the system does not allow it.
void ensure();

} // namespace Ovra::GeoTool::FixedAddresses
