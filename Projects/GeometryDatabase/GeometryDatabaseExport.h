#pragma once

#include <QtCore/qglobal.h>

/// \file
/// \def OVRA_GEO_EXPORT
/// \brief The export mark of the library's public classes and functions.
///
/// The library is built with hidden visibility and with OVRA_GEOMETRY_DATABASE_BUILD defined. A host
/// defines nothing. A host that compiles the sources into its own binary instead of linking the
/// shared library defines OVRA_GEOMETRY_DATABASE_STATIC.
#if defined(OVRA_GEOMETRY_DATABASE_STATIC)
#define OVRA_GEO_EXPORT
#elif defined(OVRA_GEOMETRY_DATABASE_BUILD)
#define OVRA_GEO_EXPORT Q_DECL_EXPORT
#else
#define OVRA_GEO_EXPORT Q_DECL_IMPORT
#endif
