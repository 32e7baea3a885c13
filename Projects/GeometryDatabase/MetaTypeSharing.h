#pragma once

#include "GeometryDatabaseExport.h"

#include <QMetaType>

/// \file
/// \brief One description of a value class for the whole program. Not for hosts.
///
/// Qt describes a type to its meta-type system in a template's static member. A library and a host
/// that both hide their symbols would have one such member each, with equal content; but Qt
/// compares their addresses where it looks for the older name that streams before version 6.0
/// carry, so that the bytes of a stored value would depend on which of the two had made it. Qt
/// shares the descriptions of its own classes in this way. On Windows the address of an imported
/// object is no constant, and each binary keeps its own.

#if defined(Q_OS_WIN)
#define OVRA_GEO_DECLARE_SHARED_METATYPE(Type) Q_DECLARE_METATYPE(Type)
#define OVRA_GEO_DEFINE_SHARED_METATYPE(Type)
#else
/// \brief Stands in the header, in the global namespace, after the class and its stream operators.
#define OVRA_GEO_DECLARE_SHARED_METATYPE(Type)                                                     \
    Q_DECLARE_METATYPE(Type)                                                                       \
    extern template struct OVRA_GEO_EXPORT QtPrivate::QMetaTypeInterfaceWrapper<Type>;
/// \brief Stands in the source, in the global namespace.
#define OVRA_GEO_DEFINE_SHARED_METATYPE(Type)                                                      \
    template struct QtPrivate::QMetaTypeInterfaceWrapper<Type>;
#endif
