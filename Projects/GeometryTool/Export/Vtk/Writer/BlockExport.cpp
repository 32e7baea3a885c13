#include "BlockExport.h"

#include "CaseView.h"
#include "Counted.h"
#include "EntityNames.h"
#include "ExportJob.h"
#include "MeshEntity.h"
#include "ModelEntity.h"
#include "OutputFiles.h"
#include "Progress.h"
#include "VtkFile.h"

#include <QFile>
#include <QXmlStreamWriter>

#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// "face_12": unlike a name, it is one of its own and can stand in a path.
QString fileNameOf(const ModelEntity& entity)
{
    return QStringLiteral("%1_%2").arg(kindName(entity.dimension())).arg(entity.id());
}

QString blockNameOf(const ModelEntity& entity)
{
    return entity.name().isEmpty() ? fileNameOf(entity) : entity.name();
}

} // namespace

BlockExport::BlockExport(const ExportJob& job)
    : job_(job)
    , folder_(job)
    , grid_(job.view)
{
}

void BlockExport::write()
{
    const Blocks regions =
        writeAll(job_.view.elementDimension(), QStringLiteral(".vtu"),
                 [this](const CaseGrid::Selection& elements, ModelEntity* region, QFile& file) {
                     VtkFile::write(*grid_.elements(elements, {region}), file);
                 });
    grid_.tellOfEmptyFaces(job_);
    const Blocks faces =
        writeAll(job_.view.faceDimension(), QStringLiteral(".vtp"),
                 [this](const CaseGrid::Selection& meshFaces, ModelEntity* face, QFile& file) {
                     VtkFile::write(*grid_.faces(meshFaces, {face}), file);
                 });
    writeIndex(regions, faces);
}

template <typename WriteOne>
BlockExport::Blocks BlockExport::writeAll(int dimension, const QString& suffix, WriteOne writeOne)
{
    const Children children = childrenOf(dimension);
    const std::vector<ModelEntity*>& entities = job_.view.modelEntities(dimension);
    tellOfOthers(dimension, children);
    job_.progress.phase(QStringLiteral("writing model %1s").arg(kindName(dimension)));
    Blocks blocks;
    for (ModelEntity* entity : entities) {
        const QString file = fileNameOf(*entity) + suffix;
        folder_.write(file,
                      [&](QFile& opened) { writeOne(children.value(entity), entity, opened); });
        blocks.push_back({blockNameOf(*entity), folder_.reference(file)});
        job_.progress.update(static_cast<qint64>(blocks.size()),
                             static_cast<qint64>(entities.size()), QStringLiteral("blocks"));
    }
    return blocks;
}

BlockExport::Children BlockExport::childrenOf(int dimension) const
{
    Children children;
    const std::vector<MeshEntity*>& entities = job_.view.meshEntities(dimension);
    CaseGrid::Selection* last = nullptr; // neighbours mostly stand on the same
    for (std::size_t i = 0; i < entities.size(); ++i) {
        const ModelEntity* const parent = entities[i]->parent();
        if (i == 0 || parent != entities[i - 1]->parent()) {
            const bool isOwn = parent && parent->dimension() == dimension;
            last = isOwn ? &children[parent] : nullptr;
        }
        if (last) {
            last->push_back(i);
        }
    }
    return children;
}

void BlockExport::tellOfOthers(int dimension, const Children& children) const
{
    auto others = static_cast<qint64>(job_.view.meshEntities(dimension).size());
    for (const CaseGrid::Selection& selection : children) {
        others -= static_cast<qint64>(selection.size());
    }
    if (others > 0) {
        const QString kind = kindName(dimension);
        job_.progress.warning(QStringLiteral("%1 on no model %2 and in no block")
                                  .arg(counted(others, QStringLiteral("mesh %1 stands").arg(kind),
                                               QStringLiteral("mesh %1s stand").arg(kind)),
                                       kind));
    }
}

void BlockExport::writeIndex(const Blocks& regions, const Blocks& faces) const
{
    QXmlStreamWriter xml(&job_.files.add(job_.path));
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("VTKFile"));
    xml.writeAttribute(QStringLiteral("type"), QStringLiteral("vtkMultiBlockDataSet"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
    xml.writeAttribute(QStringLiteral("byte_order"), QStringLiteral("LittleEndian"));
    xml.writeStartElement(QStringLiteral("vtkMultiBlockDataSet"));
    int index = 0;
    for (const auto& [dimension, blocks] : {std::pair(job_.view.elementDimension(), &regions),
                                            std::pair(job_.view.faceDimension(), &faces)}) {
        xml.writeStartElement(QStringLiteral("Block"));
        xml.writeAttribute(QStringLiteral("index"), QString::number(index++));
        xml.writeAttribute(QStringLiteral("name"), kindName(dimension) + QLatin1Char('s'));
        for (std::size_t i = 0; i < blocks->size(); ++i) {
            xml.writeEmptyElement(QStringLiteral("DataSet"));
            xml.writeAttribute(QStringLiteral("index"), QString::number(i));
            xml.writeAttribute(QStringLiteral("name"), (*blocks)[i].name);
            xml.writeAttribute(QStringLiteral("file"), (*blocks)[i].file);
        }
        xml.writeEndElement();
    }
    xml.writeEndDocument();
}

} // namespace Ovra::GeoTool
