#pragma once

#include "Database.h"
#include "Mesh.h"
#include "Model.h"

#include <QDataStream>
#include <QFile>
#include <QString>

namespace SavedCase
{

/// \brief Writes the pair \p name + ".geo_model" and ".geo_mesh" in the current formats.
inline bool save(Ovra::Geo::Database& database, const QString& name)
{
    QFile modelFile(name + QStringLiteral(".geo_model"));
    QFile meshFile(name + QStringLiteral(".geo_mesh"));
    if (!modelFile.open(QIODevice::WriteOnly) || !meshFile.open(QIODevice::WriteOnly)) {
        return false;
    }
    QDataStream modelStream(&modelFile);
    QDataStream meshStream(&meshFile);
    database.model()->write(modelStream);
    database.mesh()->write(meshStream);
    return modelStream.status() == QDataStream::Ok && meshStream.status() == QDataStream::Ok;
}

} // namespace SavedCase
