#pragma once

#include <QByteArray>
#include <QString>

class Standard_Failure;
class TopoDS_Shape;

namespace Ovra::GeoTool
{

class FiniteBuffer;

/// \brief Reads a BREP file of the geometry kernel, text or binary, into Gmsh's current model.
///
/// The kernel alone judges whether the file is whole: what it does not ask for, such as text behind
/// the reference to the whole, does not matter. Gmsh hands it the file in a way that lets it read on
/// for ever behind the end of one that is cut off, and hands it no binary ones.
class BrepReader
{
public:
    explicit BrepReader(const QString& path);

    /// \brief Makes the entities in Gmsh, numbered as Gmsh numbers those of a text file.
    ///
    /// Throws ToolError: InputDamaged with the place in the file, Unsuitable for a version that the
    /// kernel does not know and for faces without a surface.
    void read() const;

private:
    QByteArray content() const;
    QByteArray header(const QByteArray& content) const;
    bool isBinary(const QByteArray& header) const;
    TopoDS_Shape shape() const;
    [[noreturn]] void fail(const QString& place, const QString& reason) const;
    void requireSurfaces(const TopoDS_Shape& shape) const;
    void handOver(TopoDS_Shape& shape) const;

    QString path_;
};

} // namespace Ovra::GeoTool
