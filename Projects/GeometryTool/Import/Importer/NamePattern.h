#pragma once

#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

namespace Ovra::GeoTool
{

struct ImportedEntity;
struct ImportedMesh;

/// \brief Names of entities, their own in the input, such as "Shapes/board/chip", and those of their
/// groups, by a text in which each `*` stands for any characters, a slash included, or none.
///
/// The text is held against the whole name and against what follows its last slash.
class NamePattern
{
public:
    explicit NamePattern(const QString& text);

    /// \brief Ids of the entities of \p dimension with such a name, ascending.
    QList<int> in(const ImportedMesh& mesh, int dimension) const;

    /// \brief Names that come near the text, or else what names there are; for messages.
    QString alternatives(const ImportedMesh& mesh) const;

    /// \brief The order in which patterns that fit one entity are applied, the last of which has its
    /// way: those with a `*` first, then by ascending number of the other characters, then by text.
    bool isVaguerThan(const NamePattern& other) const;

private:
    bool matches(const QString& name) const;
    bool matches(const ImportedEntity& entity) const;
    QStringList near(const QStringList& names) const;

    QString text_;
    QRegularExpression expression_;
};

} // namespace Ovra::GeoTool
