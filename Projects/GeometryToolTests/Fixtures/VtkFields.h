#pragma once

#include "AttributeMap.h"
#include "ImportChecks.h"
#include "Matrix.h"
#include "VtkContent.h"

#include <QSet>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <vector>

/// \brief Compares what VTK reads of a case, entity by entity, with the case.
class VtkFields
{
public:
    using MeshEntity = Ovra::Geo::MeshEntity;

    explicit VtkFields(ImportedCase& original)
        : original_(original)
    {
    }

    /// \brief The first thing about the cells, of \p dimension, and their points that is not as in
    /// the case; empty if all is. What is a ghost in a part belongs to another.
    QString faultOf(const VtkContent::Grid& grid, int dimension) const
    {
        std::vector<MeshEntity*> cells;
        QSet<MeshEntity*> points;
        for (MeshEntity* each : original_.meshEntities(dimension)) {
            if (each->parent() && each->parent()->dimension() == dimension) {
                cells.push_back(each);
                for (MeshEntity* vertex : ImportedCase::vertices(each)) {
                    points += vertex;
                }
            }
        }
        const QString fault = faultOf(grid.cells, cells);
        return fault.isEmpty() ? faultOf(grid.points, {points.begin(), points.end()}) : fault;
    }

    /// \brief A value as VtkContent has it in a row of as many components as the value has.
    static QString textOf(const QVariant& value)
    {
        QStringList texts;
        for (const double number : numbersOf(value)) {
            texts += VtkContent::textOf(number);
        }
        return texts.isEmpty() ? value.toString() : texts.join(QLatin1Char(' '));
    }

private:
    using Values = QMap<QString, QVariant>;

    /// By tag; those of what an element stands on count where it has none of its own.
    static Values valuesOf(MeshEntity& entity)
    {
        Values values;
        const auto take = [&values](const Ovra::Geo::AttributeMap& attributes) {
            for (const Ovra::Geo::AttributeType& type : attributes.types()) {
                values.insert(type.toString(), attributes.value(type, QVariant()));
            }
        };
        if (entity.dimension() > 0) {
            take(entity.parent()->attributes());
        }
        take(entity.attributes());
        return values;
    }

    QString faultOf(const VtkContent::Rows& rows, const std::vector<MeshEntity*>& expected) const
    {
        QSet<int> missing;
        QSet<QString> tags;
        for (MeshEntity* entity : expected) {
            missing += entity->id();
            const QStringList own = valuesOf(*entity).keys();
            tags += QSet<QString>(own.begin(), own.end());
        }
        const int dimension = expected.empty() ? 0 : expected.front()->dimension();
        for (std::size_t row = 0; row < rows.count; ++row) {
            if (rows.number("vtkGhostType", row) > 0) {
                continue;
            }
            const int id = static_cast<int>(rows.number("mesh_id", row));
            if (!missing.remove(id)) {
                return QStringLiteral("%1 is there twice, or is not in the case").arg(id);
            }
            const QString fault =
                faultOf(rows, row, *original_.mesh()->entity(dimension, id), tags);
            if (!fault.isEmpty()) {
                return QStringLiteral("%1 of dimension %2: %3").arg(id).arg(dimension).arg(fault);
            }
        }
        return missing.isEmpty() ? QString() : QStringLiteral("%1 are missing").arg(missing.size());
    }

    static QString faultOf(const VtkContent::Rows& rows, std::size_t row, MeshEntity& entity,
                           const QSet<QString>& tags)
    {
        const QString parent = QString::number(entity.parent() ? entity.parent()->id() : 0);
        if (rows.text("model_id", row) != parent) {
            return "it is not on " + parent;
        }
        if (entity.dimension() > 0 && rows.text("model_name", row) != entity.parent()->name()) {
            return "it is not on " + entity.parent()->name();
        }
        const Values values = valuesOf(entity);
        for (const QString& tag : tags) {
            const QVariant value = values.value(tag);
            if (!isAsGiven(rows, row, tag, value)) {
                return tag + " is " + rows.text(tag, row) + ", not " + textOf(value);
            }
        }
        return QString();
    }

    /// Where some lack an attribute a field tells which, and those have 0, no number or no text.
    static bool isAsGiven(const VtkContent::Rows& rows, std::size_t row, const QString& tag,
                          const QVariant& value)
    {
        const QString given = tag + QStringLiteral("_given");
        const double expected = value.isValid() ? 1 : 0;
        if (rows.has(given) ? rows.number(given, row) != expected : !value.isValid()) {
            return false;
        }
        const std::vector<double> numbers = numbersOf(value);
        if (value.typeId() == QMetaType::QVariantList &&
            static_cast<std::size_t>(rows.number(tag + QStringLiteral("_count"), row)) !=
                numbers.size()) {
            return false;
        }
        return rows.isText(tag) ? rows.text(tag, row) == textOf(value)
                                : isPadded(rows.numbers(tag, row), numbers);
    }

    static bool isPadded(const std::vector<double>& row, const std::vector<double>& numbers)
    {
        return row.size() >= numbers.size() && !row.empty() &&
               std::equal(numbers.begin(), numbers.end(), row.begin()) &&
               std::all_of(row.begin() + static_cast<std::ptrdiff_t>(numbers.size()), row.end(),
                           [](double rest) { return rest == 0 || std::isnan(rest); });
    }

    /// None of a text.
    static std::vector<double> numbersOf(const QVariant& value)
    {
        using namespace Ovra::Geo;
        std::vector<double> numbers;
        if (value.metaType() == QMetaType::fromType<Vector>()) {
            const auto vector = value.value<Vector>();
            numbers = {vector.x(), vector.y(), vector.z()};
        } else if (value.metaType() == QMetaType::fromType<Matrix>()) {
            for (int i = 0; i < 9; ++i) {
                numbers.push_back(value.value<Matrix>()(i / 3, i % 3));
            }
        } else if (value.typeId() == QMetaType::QVariantList) {
            for (const QVariant& item : value.toList()) {
                numbers.push_back(item.toDouble());
            }
        } else if (value.isValid() && value.typeId() != QMetaType::QString) {
            numbers = {value.toDouble()};
        }
        return numbers;
    }

    ImportedCase& original_;
};
