#include "PictureActors.h"

#include "PictureData.h"

#include <map>
#include <vtkActor.h>
#include <vtkCellArray.h>
#include <vtkClipPolyData.h>
#include <vtkCutter.h>
#include <vtkMapper.h>
#include <vtkNew.h>
#include <vtkPlane.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>
#include <vtkUnstructuredGrid.h>

namespace Ovra::GeoTool
{

namespace
{

using Colour = PictureData::Colour;
using Point = PictureData::Point;

constexpr Colour ink = {0.13, 0.15, 0.18};

Colour darker(const Colour& colour)
{
    constexpr double share = 0.55;
    return {colour[0] * share, colour[1] * share, colour[2] * share};
}

vtkSmartPointer<vtkPoints> pointsOf(const std::vector<Point>& places)
{
    const auto points = vtkSmartPointer<vtkPoints>::New();
    points->SetDataTypeToDouble();
    points->SetNumberOfPoints(static_cast<vtkIdType>(places.size()));
    for (std::size_t i = 0; i < places.size(); ++i) {
        points->SetPoint(static_cast<vtkIdType>(i), places[i].data());
    }
    return points;
}

void addCells(vtkCellArray& cells, const std::vector<int>& vertices, int corners)
{
    for (std::size_t i = 0; i < vertices.size(); i += static_cast<std::size_t>(corners)) {
        cells.InsertNextCell(corners);
        for (int corner = 0; corner < corners; ++corner) {
            cells.InsertCellPoint(vertices[i + static_cast<std::size_t>(corner)]);
        }
    }
}

/// The side of the plane that is drawn has negative values, as a clip keeps with InsideOut.
vtkSmartPointer<vtkPlane> planeOf(const PictureData::Plane& plane)
{
    const auto result = vtkSmartPointer<vtkPlane>::New();
    Point origin = {};
    Point normal = {};
    origin.at(static_cast<std::size_t>(plane.axis)) = plane.at;
    normal.at(static_cast<std::size_t>(plane.axis)) = plane.keepsAbove ? -1.0 : 1.0;
    result->SetOrigin(origin.data());
    result->SetNormal(normal.data());
    return result;
}

vtkSmartPointer<vtkPolyData> clipped(const PictureData& data, vtkSmartPointer<vtkPolyData> mesh)
{
    if (!data.plane || mesh->GetNumberOfCells() == 0) {
        return mesh;
    }
    const vtkNew<vtkClipPolyData> clip;
    clip->SetInputData(mesh);
    clip->SetClipFunction(planeOf(*data.plane));
    clip->InsideOutOn();
    clip->Update();
    return clip->GetOutput();
}

/// Polygons behind lines, and those behind other polygons, at the same place.
void putBehind(vtkMapper& mapper, double places)
{
    mapper.SetRelativeCoincidentTopologyPolygonOffsetParameters(places, places);
}

vtkSmartPointer<vtkActor> actorOf(vtkPolyData* mesh, const Point& offset)
{
    const vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputData(mesh);
    mapper->ScalarVisibilityOff();
    putBehind(*mapper, 1.0);
    const auto actor = vtkSmartPointer<vtkActor>::New();
    actor->SetMapper(mapper);
    actor->SetPosition(offset[0], offset[1], offset[2]);
    return actor;
}

/// Flat, with light that comes from the eye, so that neighbours of the same plane have one colour.
void dress(vtkActor& actor, const Colour& colour, double opacity, bool hasEdges)
{
    vtkProperty& property = *actor.GetProperty();
    const Colour edge = darker(colour);
    property.SetColor(colour[0], colour[1], colour[2]);
    property.SetInterpolationToFlat();
    property.SetAmbient(0.5);
    property.SetDiffuse(0.55);
    property.SetOpacity(opacity);
    property.SetEdgeVisibility(hasEdges);
    property.SetEdgeColor(edge[0], edge[1], edge[2]);
}

void addSurface(const PictureData& data, const PictureData::Surface& surface, vtkPoints* points,
                vtkRenderer& renderer)
{
    const vtkNew<vtkCellArray> polygons;
    addCells(*polygons, surface.triangles, 3);
    addCells(*polygons, surface.quadrilaterals, 4);
    const auto mesh = vtkSmartPointer<vtkPolyData>::New();
    mesh->SetPoints(points);
    mesh->SetPolys(polygons);
    const auto actor = actorOf(clipped(data, mesh), surface.offset);
    putBehind(*actor->GetMapper(), surface.isBehind ? 2.0 : 1.0);
    const bool isSolid =
        surface.opacity == 1.0; // lines of what one sees through would hide the rest
    dress(*actor, surface.colour, surface.opacity, data.hasMeshLines && isSolid);
    renderer.AddActor(actor);
}

int cellType(int vertexCount)
{
    static const std::map<int, int> types = {
        {4, VTK_TETRA}, {5, VTK_PYRAMID}, {6, VTK_WEDGE}, {8, VTK_HEXAHEDRON}};
    return types.at(vertexCount);
}

void addSection(const PictureData& data, const PictureData::Section& section, vtkPoints* points,
                vtkRenderer& renderer)
{
    const vtkNew<vtkUnstructuredGrid> grid;
    grid->SetPoints(points);
    for (std::size_t i = 0; i + 1 < section.starts.size(); ++i) {
        std::vector<vtkIdType> vertices(section.vertices.begin() + section.starts[i],
                                        section.vertices.begin() + section.starts[i + 1]);
        const int count = static_cast<int>(vertices.size());
        grid->InsertNextCell(cellType(count), count, vertices.data());
    }
    const vtkNew<vtkCutter> cutter;
    cutter->SetInputData(grid);
    cutter->SetCutFunction(planeOf(*data.plane));
    cutter->GenerateTrianglesOff();
    cutter->Update();
    const auto actor = actorOf(cutter->GetOutput(), section.offset);
    dress(*actor, section.colour, 1.0, data.hasMeshLines);
    renderer.AddActor(actor);
}

void addLine(const PictureData& data, const PictureData::Line& line, vtkPoints* points,
             vtkRenderer& renderer)
{
    const vtkNew<vtkCellArray> segments;
    addCells(*segments, line.ends, 2);
    const auto mesh = vtkSmartPointer<vtkPolyData>::New();
    mesh->SetPoints(points);
    mesh->SetLines(segments);
    const auto actor = actorOf(clipped(data, mesh), line.offset);
    actor->GetProperty()->SetColor(ink[0], ink[1], ink[2]);
    actor->GetProperty()->SetLineWidth(1.6F);
    actor->GetProperty()->LightingOff();
    renderer.AddActor(actor);
}

} // namespace

void addSurfaces(const PictureData& data, vtkRenderer& renderer)
{
    vtkMapper::SetResolveCoincidentTopologyToPolygonOffset();
    const vtkSmartPointer<vtkPoints> points = pointsOf(data.points);
    for (const PictureData::Surface& surface : data.surfaces) {
        addSurface(data, surface, points, renderer);
    }
    for (const PictureData::Section& section : data.sections) {
        addSection(data, section, points, renderer);
    }
    for (const PictureData::Line& line : data.lines) {
        addLine(data, line, points, renderer);
    }
}

void addMarks(const PictureData& data, vtkRenderer& renderer)
{
    for (const PictureData::Mark& mark : data.marks) {
        const vtkNew<vtkCellArray> vertices;
        addCells(*vertices, {0}, 1);
        const vtkNew<vtkPolyData> mesh;
        mesh->SetPoints(pointsOf({mark.place}));
        mesh->SetVerts(vertices);
        const auto actor = actorOf(mesh, {});
        actor->GetProperty()->SetColor(mark.colour[0], mark.colour[1], mark.colour[2]);
        actor->GetProperty()->SetPointSize(14.0F);
        actor->GetProperty()->RenderPointsAsSpheresOn();
        actor->GetProperty()->SetAmbient(0.7); // in all the colour that the legend says
        actor->GetProperty()->SetDiffuse(0.3);
        renderer.AddActor(actor);
    }
}

} // namespace Ovra::GeoTool
