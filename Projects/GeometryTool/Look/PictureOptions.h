#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace Ovra::GeoTool
{

/// \brief What a user asks of a picture.
struct PictureOptions
{
    /// \brief A plane across an axis of the case.
    struct Cut
    {
        int axis = 0; ///< 0 to 2
        double at = 0;
    };

    static constexpr int SmallestSide = 200;
    static constexpr int LargestSide = 8000;

    QString colorBy; ///< "region", "face", "material" or the tag of an attribute; empty: as fits
    std::optional<Cut> cut;
    QStringList faces;  ///< names of the faces to show, with * and ?; empty shows all
    double explode = 0; ///< how far regions move apart, in parts of their distance from the middle
    int width = 1600;   ///< pixels
    int height = 1000;
    bool hasFindings = false;
    QString unit; ///< of the coordinates, to stand at the axes; may be empty

    /// \brief "1600x1000"; throws ToolError Usage.
    void setSize(const QString& text);

    /// \brief "x=0.05"; throws ToolError Usage.
    void setCut(const QString& text);
};

} // namespace Ovra::GeoTool
