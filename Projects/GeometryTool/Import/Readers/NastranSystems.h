#pragma once

#include "Vector.h"

#include <QString>

#include <array>
#include <map>

namespace Ovra::GeoTool
{

/// \brief The coordinate systems of a Nastran file, rectangular (CORD2R) and cylindrical (CORD2C).
class NastranSystems
{
public:
    /// \brief A system as it is given.
    struct Definition
    {
        bool isCylindrical = false;
        qint64 reference = 0;              ///< the system in which the points are given
        std::array<Geo::Vector, 3> points; ///< origin, on the third axis, in the half-plane of the
                                           ///< first and the third
    };

    void add(qint64 number, const Definition& definition) { definitions_[number] = definition; }

    /// \brief Takes a point from system \p number to the basic one, which is 0.
    ///
    /// The coordinates of a cylindrical one are radius, angle in degrees and height.
    /// \param[out] fault what is wrong with the system; untouched otherwise
    Geo::Vector basic(qint64 number, const Geo::Vector& point, QString& fault) const;

private:
    /// \brief A system within the basic one.
    struct Frame
    {
        bool isCylindrical = false;
        Geo::Vector origin;
        std::array<Geo::Vector, 3> axes;
    };

    const Frame* frame(qint64 number, QString& fault, int depth) const;
    Geo::Vector placed(qint64 number, const Geo::Vector& point, QString& fault, int depth) const;

    std::map<qint64, Definition> definitions_;
    mutable std::map<qint64, Frame> frames_; ///< those that have been worked out
};

} // namespace Ovra::GeoTool
