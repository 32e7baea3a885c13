#pragma once

#include <QString>
#include <QStringList>

namespace Ovra::GeoTool
{

/// \brief What a shell can offer where an argument stands.
struct Completion
{
    enum class Kind
    {
        Nothing,    ///< a number or a text of one's own
        Words,      ///< one of the words
        Files,      ///< a file with one of the suffixes, of any if there are none
        Cases,      ///< a case by its name, or a file with one of the suffixes
        Directories ///< a directory
    };

    Kind kind = Kind::Nothing;
    QStringList words; ///< the words, or suffixes without the dot

    /// \brief What stands for an argument in the help tells what it is.
    /// \param command     "export"
    /// \param placeholder "FILE", "NAME", "2013|2014|2014a"
    static Completion of(const QString& command, const QString& placeholder);

    /// \brief Whether of() knows the placeholder, be it as one for which nothing can be offered.
    static bool isKnown(const QString& placeholder);
};

} // namespace Ovra::GeoTool
