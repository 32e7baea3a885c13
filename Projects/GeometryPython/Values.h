#pragma once

#include "AttributeType.h"
#include "Box.h"
#include "Matrix.h"
#include "Vector.h"

#include <QString>
#include <QVariant>

#include <pybind11/pybind11.h>

namespace Ovra::GeoPython
{

/// \brief A value of a type that Python has no counterpart of: it can be kept and set again.
struct OpaqueValue
{
    QVariant value;
};

/// \name Values of the library as objects of Python
/// Vector, Matrix and Box are the named tuples of ovrageo.values.
/// \{
pybind11::object toPython(const Geo::Vector& vector);
pybind11::object toPython(const Geo::Matrix& matrix);
pybind11::object toPython(const Geo::Box& box);
pybind11::str toPython(const QString& text);
pybind11::object toPython(const QVariant& value);
/// \}

/// \brief Three finite numbers of any sequence; throws ValueError or TypeError.
Geo::Vector vectorFrom(const pybind11::handle& object);

/// \brief Two vectors of any sequence.
Geo::Box boxFrom(const pybind11::handle& object);

QString textFrom(const pybind11::str& text);

/// \brief \p object as the value of an attribute of \p type; throws TypeError, which says what the
///        attribute takes, where that is fixed, or OverflowError.
QVariant valueFrom(const pybind11::handle& object, const Geo::AttributeType& type);

/// \brief The attribute of that tag or alias; throws KeyError.
Geo::AttributeType attributeType(const pybind11::str& tag);

} // namespace Ovra::GeoPython
