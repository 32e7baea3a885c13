#include "NamePattern.h"

#include "ImportedMesh.h"

#include <algorithm>
#include <numeric>
#include <tuple>
#include <vector>

namespace Ovra::GeoTool
{

namespace
{

constexpr QLatin1Char Wildcard('*');
constexpr QLatin1Char Separator('/');

QString lastPart(const QString& name)
{
    return name.section(Separator, -1);
}

/// \brief Number of characters to put in, leave out or change to make one text of the other, in
/// either case of letters (Levenshtein distance).
qsizetype distance(const QString& a, const QString& b)
{
    std::vector<qsizetype> row(static_cast<std::size_t>(b.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 0; i < a.size(); ++i) {
        qsizetype diagonal = row[0];
        row[0] = i + 1;
        for (qsizetype j = 0; j < b.size(); ++j) {
            const auto at = static_cast<std::size_t>(j);
            const qsizetype changed = diagonal + (a[i].toLower() == b[j].toLower() ? 0 : 1);
            diagonal = row[at + 1];
            row[at + 1] = std::min({changed, diagonal + 1, row[at] + 1});
        }
    }
    return row[static_cast<std::size_t>(b.size())];
}

/// \brief The last parts of all names of entities, sorted, each once.
QStringList allNames(const ImportedMesh& mesh)
{
    QStringList names;
    for (const auto& entities : mesh.entities) {
        for (const ImportedEntity& entity : entities) {
            for (const QString& name : entity.discarded ? QStringList() : entity.names()) {
                names.append(lastPart(name));
            }
        }
    }
    names.sort();
    names.removeDuplicates();
    return names;
}

} // namespace

NamePattern::NamePattern(const QString& text)
    : text_(text)
{
    QStringList parts = text.split(Wildcard);
    for (QString& part : parts) {
        part = QRegularExpression::escape(part);
    }
    expression_.setPattern(QRegularExpression::anchoredPattern(parts.join(QStringLiteral(".*"))));
}

bool NamePattern::matches(const QString& name) const
{
    return expression_.match(name).hasMatch() || expression_.match(lastPart(name)).hasMatch();
}

bool NamePattern::matches(const ImportedEntity& entity) const
{
    const QStringList names = entity.names();
    return std::any_of(names.begin(), names.end(),
                       [this](const QString& name) { return matches(name); });
}

QList<int> NamePattern::in(const ImportedMesh& mesh, int dimension) const
{
    QList<int> ids;
    for (const ImportedEntity& entity : mesh.entitiesOf(dimension)) {
        if (!entity.discarded && matches(entity)) {
            ids.append(entity.id);
        }
    }
    return ids;
}

QString NamePattern::alternatives(const ImportedMesh& mesh) const
{
    constexpr qsizetype shown = 10;
    const QStringList names = allNames(mesh);
    if (names.isEmpty()) {
        return QStringLiteral("the input has no names");
    }
    const QStringList close = near(names);
    if (!close.isEmpty()) {
        return QStringLiteral("near it are ") + close.join(QStringLiteral(", "));
    }
    QString text =
        QStringLiteral("the input has ") + names.mid(0, shown).join(QStringLiteral(", "));
    if (names.size() > shown) {
        text += QStringLiteral(" and %1 more").arg(names.size() - shown);
    }
    return text;
}

QStringList NamePattern::near(const QStringList& names) const
{
    constexpr qsizetype shown = 3;
    const QString wanted = lastPart(text_).remove(Wildcard);
    std::vector<std::pair<qsizetype, QString>> close;
    for (const QString& name : names) {
        const qsizetype steps = distance(wanted, name);
        if (2 * steps <= wanted.size()) {
            close.emplace_back(steps, name);
        }
    }
    std::sort(close.begin(), close.end());
    QStringList list;
    for (const auto& entry : close) {
        list.append(entry.second);
    }
    return list.mid(0, shown);
}

bool NamePattern::isVaguerThan(const NamePattern& other) const
{
    const auto rank = [](const QString& text) {
        const qsizetype wildcards = text.count(Wildcard);
        return std::make_tuple(wildcards == 0, text.size() - wildcards, text);
    };
    return rank(text_) < rank(other.text_);
}

} // namespace Ovra::GeoTool
