#pragma once

#include <QHash>
#include <QString>

namespace Ovra::Geo
{
class Model;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief Names and measures for the faces and regions that operations of the library add to the
///        model, and which it leaves without.
///
/// A copy is called like its original, with a suffix behind a colon: "fin:solid". Where another
/// entity of the case has that name, a number follows: "fin:solid:2". Copies of originals that share
/// a name share theirs. For an original without a name stand its kind and its id: "face_12:solid".
class CopyDescription
{
public:
    /// \param model as it is before the copies get their names
    /// \param dimension of the copies
    CopyDescription(const Geo::Model& model, int dimension);

    /// \brief Gives \p copy its name, and centroid, normal, box and size of \p original.
    ///
    /// Names depend on the order of the calls only where one original has several copies.
    void describe(const Geo::ModelEntity& original, Geo::ModelEntity& copy, const QString& suffix);

private:
    QString nameFor(const Geo::ModelEntity& original, const QString& suffix);
    QString freeName(const QString& wanted) const;

    QHash<QString, int> uses_;       ///< how many entities have a name
    QHash<QString, QString> shared_; ///< by what it was made of, a name that several copies have
};

} // namespace Ovra::GeoTool
