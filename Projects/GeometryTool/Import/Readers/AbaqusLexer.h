#pragma once

#include "AbaqusLine.h"

#include <QByteArray>
#include <QFile>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief A keyword line such as "*ELSET, ELSET=left, GENERATE".
struct AbaqusKeyword
{
    QByteArray name;                          ///< in upper case, "END PART" for instance
    QHash<QByteArray, QByteArray> parameters; ///< by name in upper case; values as written

    bool has(const QByteArray& parameter) const { return parameters.contains(parameter); }
    QByteArray value(const QByteArray& parameter) const { return parameters.value(parameter); }
};

/// \brief Parts an Abaqus input file into keyword lines and data lines.
///
/// Comments and blank lines are passed over, keyword lines that go on behind a comma are put
/// together, commas within quotation marks do not separate. Other files are read in their place:
/// those of *INCLUDE, and those that hold the data of *NODE, *ELEMENT, *NSET or *ELSET (INPUT=). A
/// name of a file without a directory belongs to the directory of the file that names it.
class AbaqusLexer
{
public:
    enum class Item
    {
        Keyword,
        Data,
        End
    };

    /// \brief Begins with the file at \p path; throws ToolError InputMissing.
    explicit AbaqusLexer(const QString& path);

    /// \brief Steps to the next keyword or data line.
    ///
    /// Throws ToolError: InputMissing for a file that is named and cannot be read, InputDamaged for
    /// files that include one another and for a file whose last line is not ended.
    Item next();

    /// \brief The last keyword line; stays while its data lines pass.
    const AbaqusKeyword& keyword() const { return keyword_; }

    /// \brief The fields of the present data line, without empty ones at its end.
    const QList<QByteArray>& fields() const { return fields_; }

    /// \brief The present line.
    const AbaqusLine& line() const { return line_; }

    /// \brief The place of a line that has been read, "wing.inp: line 7".
    QString where(const AbaqusLine& line) const;

    /// \brief The place of the present line.
    QString where() const { return where(line_); }

    /// \brief Throws ToolError InputDamaged with the place and \p what.
    [[noreturn]] void fail(const QString& what) const;

private:
    struct Source
    {
        std::unique_ptr<QFile> file;
        AbaqusLine line;
    };

    void open(const QString& path, const QString& called);
    void openBeside(const QByteArray& written);
    bool takeLine(QByteArray& line);
    QByteArray readLine(Source& source);
    bool takeKeyword(QByteArray line);
    bool goesOn(const QByteArray& line);

    std::vector<Source> sources_; ///< the file that is read stands last, behind those naming it
    QStringList paths_;           ///< of all that have been opened
    AbaqusLine line_;
    AbaqusKeyword keyword_;
    QList<QByteArray> fields_;
};

} // namespace Ovra::GeoTool
