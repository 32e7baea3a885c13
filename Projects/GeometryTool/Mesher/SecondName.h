#pragma once

#include <QString>
#include <QTemporaryDir>

#include <string>

namespace Ovra::GeoTool
{

/// \brief Another name of a file, for as long as it lives, with a suffix that Gmsh knows: a link in a
/// directory of its own among those for temporary files.
///
/// Gmsh tells formats by suffixes, most of them in one or two ways to write them, and runs a file
/// beside one that it reads whose name goes on in ".opt".
class SecondName
{
public:
    /// \param role what messages call the file: "input" or "output"
    SecondName(const QString& target, const QString& role, const QString& suffix);

    /// \brief Whether the name could be made.
    bool isValid() const { return valid_; }

    /// \brief The name, as the file system has it.
    std::string encodedPath() const;

    /// \brief Makes the directory that of the process, and answers the name within it.
    std::string nameInCurrentDirectory() const;

    /// \brief What Gmsh says of a file by its second name, said of "the input" or "the output".
    static QString saidOfRole(const QString& message);

private:
    QTemporaryDir directory_;
    QString name_;
    QString path_;
    bool valid_;
};

} // namespace Ovra::GeoTool
