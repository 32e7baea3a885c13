#pragma once

#include "InterpolationCheck.h"
#include "SurfaceMesh.h"

#include <cmath>

/// \brief Makes two faces the first and the second side of a pair.
inline void makePair(Ovra::Geo::ModelEntity* first, Ovra::Geo::ModelEntity* second, int pairId)
{
    first->attributes().insert(Ovra::Geo::AttributeType::PeriodicPairId, pairId);
    first->attributes().insert(Ovra::Geo::AttributeType::PeriodicSideId, 1);
    second->attributes().insert(Ovra::Geo::AttributeType::PeriodicPairId, pairId);
    second->attributes().insert(Ovra::Geo::AttributeType::PeriodicSideId, 2);
}

/// \brief An attribute of the model, or no numbers.
inline Ovra::Geo::Vector modelVector(SurfaceMesh* surface, const Ovra::Geo::AttributeType& type)
{
    const QVariant value = surface->model()->attributes().value(type, QVariant("none"));
    return value.canConvert<Ovra::Geo::Vector>() ? value.value<Ovra::Geo::Vector>()
                                                 : Ovra::Geo::Vector(NAN, NAN, NAN);
}

inline bool isClose(const Ovra::Geo::Vector& a, const Ovra::Geo::Vector& b,
                    double tolerance = 1e-14)
{
    return (a - b).length() <= tolerance;
}

inline InterpolationLink linkOf(Ovra::Geo::MeshEntity* vertex)
{
    return LinkAttributes::periodic().of(vertex);
}

/// \brief An orthonormal frame in space: the axis of a sector and the direction of its first side.
struct Frame
{
    Ovra::Geo::Vector origin;
    Ovra::Geo::Vector radial;
    Ovra::Geo::Vector across;
    Ovra::Geo::Vector axis;

    Ovra::Geo::Vector at(double radius, double angle, double height) const
    {
        return origin + radius * (std::cos(angle) * radial + std::sin(angle) * across) +
               height * axis;
    }

    /// \brief Turned about the axis; the height stays.
    Ovra::Geo::Vector turned(const Ovra::Geo::Vector& point, double angle) const
    {
        const Ovra::Geo::Vector d = point - origin;
        const double x = d * radial;
        const double y = d * across;
        return origin + (std::cos(angle) * x - std::sin(angle) * y) * radial +
               (std::sin(angle) * x + std::cos(angle) * y) * across + (d * axis) * axis;
    }
};

inline Frame tiltedFrame()
{
    Frame frame;
    frame.origin = Ovra::Geo::Vector(3, -2, 5);
    frame.axis = Ovra::Geo::Vector(1, 2, 2) / 3.0;
    frame.radial = Ovra::Geo::Vector(2, 1, -2) / 3.0;
    frame.across = frame.axis ^ frame.radial;
    return frame;
}
