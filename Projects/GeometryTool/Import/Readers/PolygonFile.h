#pragma once

#include "PolygonSurface.h"

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief A file whose lines are followed by the numbers of a surface of polygons, as text or as
/// bytes.
///
/// Faults are told as ToolError InputDamaged, with the line of a text, or the byte in front of which
/// numbers in bytes are wrong, and the part: "line 12: face 3: there is no vertex 8".
class PolygonFile
{
public:
    enum class Form
    {
        Text,
        LittleEndian,
        BigEndian
    };

    explicit PolygonFile(const QString& path);

    /// \brief Throws ToolError InputMissing.
    void open();

    QString path() const { return file_.fileName(); }
    bool atEnd() const { return file_.atEnd(); }

    /// \brief The next line, blanks simplified; numbers left in the present one are passed over.
    QByteArray readLine();

    /// \brief How the numbers stand, Form::Text unless it is called.
    void setForm(Form form) { form_ = form; }
    bool isText() const { return form_ == Form::Text; }

    /// \brief The next number.
    /// \param type of bytes, see BinaryNumber
    /// \param owner what it belongs to, "face 3"
    double number(const QByteArray& type, const QString& owner);

    /// \brief The next number, which says how many follow.
    /// \param what "number of corners", for what is told where it is none
    qint64 count(const QByteArray& type, const QString& owner, const QString& what);

    /// \brief Throws if numbers of a text are left in the line in which \p owner ends.
    void requireEndOfLine(const QString& owner) const;

    /// \brief Adds a vertex, for \p owner.
    void addVertex(const std::array<double, 3>& place, const QString& owner);

    /// \brief Adds a face for \p owner.
    /// \param corners positions of vertices, from 0
    void addFace(const std::vector<double>& corners, const QString& owner);

    const PolygonSurface& surface() const { return surface_; }

    /// \brief Throws \p what, behind the line or the byte.
    [[noreturn]] void fail(const QString& what) const;

    /// \brief Throws that the file ends too early.
    [[noreturn]] void cutOff(const QString& missing) const;

private:
    double textNumber(const QString& owner);
    double binaryNumber(const QByteArray& type, const QString& owner);

    QFile file_;
    Form form_ = Form::Text;
    int line_ = 0;
    QList<QByteArray> words_; ///< of the present line
    qsizetype nextWord_ = 0;
    PolygonSurface surface_;
};

} // namespace Ovra::GeoTool
