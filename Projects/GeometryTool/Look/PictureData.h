#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief What is in a picture, in plain numbers and texts: all that the module which draws it knows
/// of a case.
///
/// The module is a library of its own, loaded when a picture is wanted, so that no other command
/// waits for what drawing needs. It sees this header and nothing else of the host.
struct PictureData
{
    using Point = std::array<double, 3>;
    using Colour = std::array<double, 3>; ///< red, green, blue from 0 to 1

    /// \brief Polygons of one colour; vertices are positions in \ref points.
    struct Surface
    {
        Colour colour = {};
        double opacity = 1.0;
        bool isBehind = false; ///< of two at the same place, the one that cannot be seen
        Point offset = {};     ///< by how much it is moved, after it was cut
        std::vector<int> triangles;
        std::vector<int> quadrilaterals;
    };

    /// \brief Elements that the plane goes through; what it cuts out of them is drawn.
    struct Section
    {
        Colour colour = {};
        Point offset = {};
        std::vector<int> starts = {0}; ///< where the vertices of each element begin, and end
        std::vector<int> vertices;
    };

    struct Line
    {
        Point offset = {};
        std::vector<int> ends; ///< two vertices for each piece
    };

    /// \brief A place that is marked, in front of all else.
    struct Mark
    {
        Colour colour = {};
        Point place = {};
    };

    struct LegendEntry
    {
        Colour colour = {};
        std::string text;
        bool isMark = false;
    };

    struct AxisNumber
    {
        double at = 0;
        std::string text;
    };

    /// \brief What lies on one side, before anything is moved, is not drawn.
    struct Plane
    {
        int axis = 0; ///< 0 to 2
        double at = 0;
        bool keepsAbove = false; ///< what is drawn lies at larger coordinates
    };

    int width = 0; ///< pixels
    int height = 0;
    std::vector<Point> points;
    std::vector<Surface> surfaces;
    std::vector<Section> sections;
    std::vector<Line> lines;
    std::vector<Mark> marks;
    std::optional<Plane> plane;
    bool hasMeshLines = true;

    Point low = {}; ///< box of what is drawn, where it is drawn
    Point high = {};
    Point from = {0, 0, 1}; ///< direction from which the case is seen
    Point up = {0, 1, 0};

    std::string title;
    std::string subtitle;
    std::string legendTitle;
    std::vector<LegendEntry> legend;
    std::array<std::string, 3> axisTitles;
    std::array<std::vector<AxisNumber>, 3> axisNumbers; ///< ascending; none where regions are moved
};

/// \brief What the module's function `ovrageo_draw` answers.
struct PictureAnswer
{
    std::string png;   ///< the bytes of the file
    std::string error; ///< why there are none
};

using DrawPicture = void (*)(const PictureData& data, PictureAnswer& answer);

} // namespace Ovra::GeoTool
