#pragma once

#include "Vector.h"
#include "Version.h"

#include <QList>

namespace Ovra::Geo
{

/// \brief A part of space in which the mesher is to use a finer mesh.
///
/// A plain record: the library stores it, hands it out and writes it back, and what the fields mean
/// is between the host and its mesher. The Model owns the regions that are added to it.
///
/// Binary form, in this order, without header or version:
///
/// | Field                             | Form                                     |
/// |-----------------------------------|------------------------------------------|
/// | type                              | QString                                  |
/// | filled                            | bool, 1 byte                             |
/// | length, radius, lambda            | 3 doubles                                |
/// | centroid                          | Vector                                   |
/// | vectors                           | 3 Vectors                                |
/// | points                            | 32-bit count, then as many Vectors       |
/// | background grid dimensions        | 3 signed 32-bit integers                 |
/// | uniform                           | bool, 1 byte                             |
/// | lambdas                           | 32-bit count, then as many doubles       |
/// | extent, minimum, maximum          | 3 Vectors                                |
/// | transformation                    | 3 Vectors                                |
///
/// Known to Qt's meta types as "Ovra::Geo::RefinementRegion" and, for values stored long ago,
/// "geo::RefinementRegion".
class OVRA_GEO_EXPORT RefinementRegion
{
public:
    /// \brief A region of version 0.0.0, with null type, false flags, zeros and empty lists.
    RefinementRegion() = default;

    /// \brief The same, of the given version, which no stream form carries and nothing changes.
    RefinementRegion(const Version& version)
        : version_(version)
    {
    }

    /// \name Fields that stand alone
    /// Stored as given and handed out again, a list shared until one side changes it.
    /// \{
    QString type() const { return type_; }              ///< the kind of region
    void setType(const QString& type) { type_ = type; } ///< stores the kind of region

    bool isFilled() const { return filled_; }         ///< whether it is filled
    void setFilled(bool filled) { filled_ = filled; } ///< stores whether it is filled

    double length() const { return length_; }           ///< the length
    void setLength(double length) { length_ = length; } ///< stores the length

    double radius() const { return radius_; }           ///< the radius
    void setRadius(double radius) { radius_ = radius; } ///< stores the radius

    double lambda() const { return lambda_; }           ///< the factor lambda
    void setLambda(double lambda) { lambda_ = lambda; } ///< stores lambda

    Vector centroid() const { return centroid_; }                      ///< the centroid
    void setCentroid(const Vector& centroid) { centroid_ = centroid; } ///< stores the centroid

    bool isUniform() const { return uniform_; }           ///< whether the grid is uniform
    void setUniform(bool uniform) { uniform_ = uniform; } ///< stores whether the grid is uniform

    QList<double> lambdas() const { return lambdas_; }                    ///< the list of lambdas
    void setLambdas(const QList<double>& lambdas) { lambdas_ = lambdas; } ///< stores the lambdas

    Vector extent() const { return extent_; }                  ///< the extent
    void setExtent(const Vector& extent) { extent_ = extent; } ///< stores the extent

    Vector minimum() const { return minimum_; }                    ///< the least corner
    void setMinimum(const Vector& minimum) { minimum_ = minimum; } ///< stores the least corner

    Vector maximum() const { return maximum_; }                    ///< the largest corner
    void setMaximum(const Vector& maximum) { maximum_ = maximum; } ///< stores the largest corner
    /// \}

    /// \brief One of the three vectors.
    /// \param index 2 for the second and 3 for the third; 1 and every other value give the first
    Vector vector(int index) const { return genericVector(index); }

    /// \brief Sets one of the three vectors, which \p index selects as in vector().
    void setVector(int index, const Vector& vector) { genericVector(index) = vector; }

    /// \brief Appends a point.
    void addPoint(const Vector& point) { points_.append(point); }

    /// \brief The point at \p index, from 0.
    /// \pre \p index is below pointCount()
    Vector& point(int index) { return points_[index]; }

    /// \copydoc point(int)
    const Vector& point(int index) const { return points_.at(index); }

    /// \brief Number of points.
    int pointCount() const { return static_cast<int>(points_.size()); }

    /// \brief Gives the three dimensions of the background grid.
    void getBackgroundGridDimensions(int& first, int& second, int& third) const;

    /// \brief Sets the three dimensions of the background grid.
    void setBackgroundGridDimensions(int first, int second, int third);

    /// \brief One of the three vectors of the transformation.
    /// \param index 2 for the second and 3 for the third; 1 and every other value give the first
    Vector transMat(int index) const { return transVector(index); }

    /// \brief Sets one of the three vectors of the transformation, which \p index selects as in
    ///        transMat().
    void setTransMat(int index, const Vector& vector) { transVector(index) = vector; }

private:
    friend OVRA_GEO_EXPORT QDataStream& operator<<(QDataStream&, const RefinementRegion&);
    friend OVRA_GEO_EXPORT QDataStream& operator>>(QDataStream&, RefinementRegion&);
    friend OVRA_GEO_EXPORT QTextStream& operator<<(QTextStream&, const RefinementRegion&);

    Vector& genericVector(int index);
    const Vector& genericVector(int index) const;
    Vector& transVector(int index);
    const Vector& transVector(int index) const;

    static bool init();

    // Inline: the older name stands before the static objects of any file that includes this.
    inline static const bool init_ = init();

    Version version_;
    QString type_;
    bool filled_ = false;
    double length_ = 0.0;
    double radius_ = 0.0;
    double lambda_ = 0.0;
    Vector centroid_;
    Vector vectors_[3];
    QList<Vector> points_;
    int backgroundGrid_[3] = {};
    bool uniform_ = false;
    QList<double> lambdas_;
    Vector extent_;
    Vector minimum_;
    Vector maximum_;
    Vector transMat_[3];
};

/// \brief Writes the binary form.
OVRA_GEO_EXPORT QDataStream& operator<<(QDataStream& stream, const RefinementRegion& region);

/// \brief Reads the binary form.
///
/// A list's count is not trusted: a list takes no more memory than the stream has items for, and
/// one that cannot be read in full is left empty. The stream's status tells of a failure.
OVRA_GEO_EXPORT QDataStream& operator>>(QDataStream& stream, RefinementRegion& region);

/// \brief Writes the text form: the fields in the order of the binary form, separated by blanks, on
///        lines of their own for each group, each point and each lambda; flags as 0 and 1.
OVRA_GEO_EXPORT QTextStream& operator<<(QTextStream& stream, const RefinementRegion& region);

} // namespace Ovra::Geo

OVRA_GEO_DECLARE_SHARED_METATYPE(Ovra::Geo::RefinementRegion)
