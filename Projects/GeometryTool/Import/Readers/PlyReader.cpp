#include "PlyReader.h"

#include "ToolError.h"

#include <algorithm>
#include <array>

namespace Ovra::GeoTool
{

namespace
{

bool isCorners(const PlyHeader::Property& property)
{
    return !property.countType.isEmpty() &&
           (property.name == "vertex_indices" || property.name == "vertex_index");
}

} // namespace

PlyReader::PlyReader(const QString& path)
    : file_(path)
{
}

QStringList PlyReader::read()
{
    file_.open();
    header_ = PlyHeader::of(file_);
    file_.setForm(header_.form);
    requireFaces();
    for (const PlyHeader::Element& element : std::as_const(header_.elements)) {
        const qint64 count = element.properties.isEmpty() ? 0 : element.count;
        for (qint64 i = 0; i < count; ++i) {
            readElement(element, i);
        }
    }
    return file_.surface().makeEntities();
}

void PlyReader::requireFaces() const
{
    for (const PlyHeader::Element& element : header_.elements) {
        const bool hasCorners =
            std::any_of(element.properties.begin(), element.properties.end(), isCorners);
        if (element.name == "face" && element.count > 0 && hasCorners) {
            return;
        }
        if (element.name == "tristrips" && element.count > 0) {
            throw ToolError(ExitCode::Unsuitable,
                            QStringLiteral("%1: strips of triangles are not read; save it with "
                                           "faces")
                                .arg(file_.path()));
        }
    }
    throw ToolError(ExitCode::Unsuitable,
                    QStringLiteral("%1: holds no faces, points at most").arg(file_.path()));
}

void PlyReader::readElement(const PlyHeader::Element& element, qint64 position)
{
    const QString owner =
        QStringLiteral("%1 %2").arg(QString::fromUtf8(element.name), QString::number(position));
    std::array<double, 3> place{};
    for (const PlyHeader::Property& property : element.properties) {
        const std::vector<double> found = values(property, owner);
        const qsizetype axis = QByteArray("xyz").indexOf(property.name);
        if (element.name == "vertex" && property.name.size() == 1 && axis >= 0 && !found.empty()) {
            place[static_cast<std::size_t>(axis)] = found.front();
        } else if (element.name == "face" && isCorners(property)) {
            file_.addFace(found, owner);
        }
    }
    if (element.name == "vertex") {
        file_.addVertex(place, owner);
    }
    file_.requireEndOfLine(owner);
}

std::vector<double> PlyReader::values(const PlyHeader::Property& property, const QString& owner)
{
    const bool isList = !property.countType.isEmpty();
    const qint64 count =
        isList ? file_.count(property.countType, owner, QStringLiteral("length of a list")) : 1;
    std::vector<double> all;
    for (qint64 i = 0; i < count; ++i) {
        all.push_back(file_.number(property.type, owner));
    }
    return all;
}

} // namespace Ovra::GeoTool
