#pragma once

#include "AttributeRule.h"
#include "ImportChecks.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

/// \brief What a case holds, in lines that do not hang on the order of its entities, to be compared
/// with those of another.
class CaseLines
{
public:
    struct Parts
    {
        bool ids = true;   ///< of model entities
        bool names = true; ///< and labels and attributes
        bool empty = true; ///< regions without elements
        int lowest = 0;    ///< dimension of model entities
        bool exact = true; ///< all digits of coordinates that matter; else places to 0.0001
    };

    /// \brief A line for each model entity: its name, label, attributes, neighbours and mesh.
    static QStringList of(ImportedCase& of, const Parts& parts)
    {
        QStringList lines;
        for (int d = parts.lowest; d <= of.model()->faceDimension() + 1; ++d) {
            for (Ovra::Geo::ModelEntity* entity : of.entities(d)) {
                if (parts.empty || !ImportedCase::children(entity).empty()) {
                    lines += lineOf(of, entity, parts);
                }
            }
        }
        lines.sort();
        return lines;
    }

    /// \brief Number of mesh entities by dimension and number of vertices, and the measure of all.
    static QStringList meshOf(ImportedCase& of)
    {
        QStringList lines;
        std::map<std::pair<int, int>, int> counts;
        double volume = 0;
        for (int d = 0; d <= 3; ++d) {
            for (Ovra::Geo::MeshEntity* entity : of.meshEntities(d)) {
                ++counts[{d, entity->adjacencyCount(0)}];
                volume += d == 3 ? ImportedCase::volume(entity) : 0;
            }
        }
        for (const auto& [kind, count] : counts) {
            lines += QStringLiteral("%1 of dimension %2 with %3 vertices")
                         .arg(count)
                         .arg(kind.first)
                         .arg(kind.second);
        }
        return lines + QStringList(QStringLiteral("volume %1").arg(volume, 0, 'g', 9));
    }

private:
    using ModelEntity = Ovra::Geo::ModelEntity;

    static QString lineOf(ImportedCase& of, ModelEntity* entity, const Parts& parts)
    {
        QStringList words{kindOf(*entity)};
        if (parts.ids) {
            words += QString::number(entity->id());
        }
        if (parts.names) {
            words += '"' + entity->name() + "\" \"" + entity->tag() + '"';
            words += attributesOf(of, *entity);
        }
        for (int d = parts.lowest; d <= 3; ++d) {
            words += QStringLiteral("%1 at %2").arg(neighbours(*entity, d, parts)).arg(d);
        }
        int own = 0;
        Ovra::Geo::Vector sum;
        for (Ovra::Geo::MeshEntity* child : ImportedCase::children(entity)) {
            if (child->dimension() == entity->dimension()) {
                ++own;
                sum += child->centroid();
            }
        }
        words += QStringLiteral("%1 elements about %2").arg(own).arg(placeOf(sum, own, parts));
        return words.join(' ');
    }

    static QString kindOf(const ModelEntity& entity)
    {
        return QStringList{"vertex", "edge", "face", "region"}.at(entity.dimension());
    }

    static int neighbours(const ModelEntity& entity, int dimension, const Parts& parts)
    {
        int count = 0;
        for (int i = 0; i < entity.adjacencyCount(dimension); ++i) {
            ModelEntity* neighbour = entity.adjacencyAt(dimension, i);
            count += parts.empty || !ImportedCase::children(neighbour).empty() ? 1 : 0;
        }
        return count;
    }

    /// Of \p count elements; the sum of their places where digits matter, else the mean.
    static QString placeOf(const Ovra::Geo::Vector& sum, int count, const Parts& parts)
    {
        QStringList words;
        for (const double value : {sum.x(), sum.y(), sum.z()}) {
            words += parts.exact ? rounded(value) : stepOf(value / std::max(count, 1));
        }
        return words.join(' ');
    }

    static QString rounded(double value)
    {
        return QString::number(std::abs(value) < 1e-7 ? 0.0 : value, 'g', 8);
    }

    /// Steps do not begin at round numbers, which a last digit would move across.
    static QString stepOf(double value)
    {
        return QString::number(std::floor(value * 1e4 + 0.3137), 'f', 0);
    }

    /// Entities that an attribute names stand under their names here.
    static QString attributesOf(ImportedCase& of, const ModelEntity& entity)
    {
        QStringList words;
        for (const Ovra::Geo::AttributeType& type : entity.attributes().types()) {
            const QVariant value = entity.attributes().value(type, QVariant());
            words += type.toString() + '=' + textOf(of, type, value);
        }
        return words.join(' ');
    }

    static QString textOf(ImportedCase& of, const Ovra::Geo::AttributeType& type,
                          const QVariant& value)
    {
        using Names = Ovra::GeoTool::AttributeRule::Names;
        if (value.typeId() == QMetaType::QVariantList) {
            QStringList items;
            for (const QVariant& item : value.toList()) {
                items += textOf(of, type, item);
            }
            return '(' + items.join(' ') + ')';
        }
        const Names names = Ovra::GeoTool::AttributeRule::of(type).names;
        const int faces = of.model()->faceDimension();
        if (names == Names::ModelFace || names == Names::ModelRegion) {
            ModelEntity* const named =
                of.model()->entity(names == Names::ModelFace ? faces : faces + 1, value.toInt());
            return named ? '"' + named->name() + '"' : QStringLiteral("none");
        }
        return value.canConvert<Ovra::Geo::Vector>() || !value.canConvert<QString>()
                   ? QString::fromLatin1(value.typeName())
                   : value.toString();
    }
};

Q_DECLARE_METATYPE(CaseLines::Parts)
