#pragma once

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>

#include <optional>

namespace Ovra::GeoTool
{

/// \brief A bulk data entry such as GRID, put together from its lines.
struct NastranCard
{
    QByteArray name;          ///< in upper case, without the '*' of large fields
    QList<QByteArray> fields; ///< what stands behind the name, without continuation fields
    int line = 0;             ///< its first one

    QByteArray field(qsizetype number) const { return fields.value(number - 1); }
};

/// \brief Parts a Nastran file into bulk data entries.
///
/// Fields are separated by commas, or 8 columns wide, or 16 columns where a '*' stands in the first
/// field; each line of an entry for itself. A line that begins with a blank field, '+' or '*' goes
/// on with the entry ahead of it. Comments run from '$' to the end of the line; a tab steps to the
/// next column that 8 divides.
class NastranCards
{
public:
    /// \brief Throws ToolError InputMissing if the file at \p path cannot be read.
    explicit NastranCards(const QString& path);

    /// \brief The next entry; nothing at ENDDATA or the end of the file.
    ///
    /// What stands ahead of BEGIN BULK comes as entries too. Throws ToolError InputDamaged for lines
    /// with too many fields and continuations that belong to another entry.
    std::optional<NastranCard> next();

    /// \brief Whether ENDDATA has been met.
    bool isEnded() const { return isEnded_; }

    /// \brief Whether a line break ends the last line that was read.
    bool isLineEnded() const { return isLineEnded_; }

private:
    /// \brief A line by its fields.
    struct Line
    {
        QByteArray name;
        QList<QByteArray> fields; ///< as many as the form has, but for the two at its ends
        QByteArray mark;          ///< that of the continuation, last
        bool isContinuation = false;
    };

    bool take();
    Line parted(QByteArray text) const;
    Line partedByCommas(const QByteArray& text) const;
    static Line partedByColumns(const QByteArray& text);
    void requireOwnContinuation(const NastranCard& card, const QByteArray& mark) const;

    QFile file_;
    int number_ = 0;
    Line present_;
    bool isTaken_ = false; ///< whether present_ belongs to the next entry
    bool isEnded_ = false;
    bool isLineEnded_ = true;
};

} // namespace Ovra::GeoTool
