#pragma once

#include <QByteArray>
#include <QString>

#include <cgnslib.h>
#include <initializer_list>
#include <utility>

namespace Ovra::GeoTool
{

/// \brief A new CGNS file, open to be written, with its one base.
///
/// What fails throws a ToolError OutputFailed with the words of the library. The file is then not
/// closed: HDF5 breaks down over a file that it could not write, at the end of the process too, so
/// that this is work for a process of its own.
class CgnsFile
{
public:
    /// \param path a file that need not exist
    /// \param target what messages call it
    CgnsFile(const QString& path, const QString& target, int cellDimension, int physicalDimension);
    CgnsFile(const CgnsFile&) = delete;
    CgnsFile& operator=(const CgnsFile&) = delete;

    int number() const { return number_; }
    int base() const { return base_; }
    int physicalDimension() const { return physicalDimension_; }

    /// \brief Throws if \p status, the answer of a function of the library, is a failure.
    void check(int status) const;

    /// \brief Goes to a node below the base, by labels and positions from 1.
    void go(std::initializer_list<std::pair<const char*, int>> path) const;

    /// \brief A text at the node gone to last.
    void describe(const char* name, const QString& text) const;

    /// \brief Closes the file, and looks whether it is as long as it has to be.
    void close();

private:
    QByteArray path_;
    QString target_;
    int physicalDimension_;
    int number_ = 0;
    int base_ = 0;
};

} // namespace Ovra::GeoTool
