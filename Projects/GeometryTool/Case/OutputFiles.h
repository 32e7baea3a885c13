#pragma once

#include "Descriptor.h"
#include "TemporaryName.h"

#include <QFile>
#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief A set of output files that appear together and whole, or not at all.
///
/// Each file is written beside its target, without a name where the file system can do that, else
/// under a temporary one. commit() brings all of them to disk, then renames them in the order in
/// which they were added; if a rename fails, those done before are taken back. Without commit() the
/// destructor removes the temporary files and leaves the targets as they were. What a killed process
/// has left beside a target goes with the next commit() to that target. A target that is a device, a
/// pipe or standard output is written directly.
class OutputFiles
{
public:
    OutputFiles();
    ~OutputFiles();
    OutputFiles(const OutputFiles&) = delete;
    OutputFiles& operator=(const OutputFiles&) = delete;

    /// \brief Opens the file that will become \p path; owned by this object.
    ///
    /// Throws ToolError OutputFailed if it cannot be created, in a directory that is missing for
    /// instance.
    QFile& add(const QString& path);

    /// \brief The content of \p file, of add(), is whole: brings it to disk and closes it.
    ///
    /// For sets of many files: where they take half of the descriptors that the process can have,
    /// further ones wait under their temporary names, and take none. Throws ToolError OutputFailed as
    /// commit() does.
    void finish(QFile& file);

    /// \brief Makes the directory \p path, if it is missing, for files to be added in it.
    ///
    /// It goes again with this object if nothing has been written to it. Throws ToolError OutputFailed
    /// if the directory cannot be made.
    void addDirectory(const QString& path);

    /// \brief The file \p path goes as commit() has put all others in place, unless it is one of
    /// them; one that is not there is no matter.
    void addRemoval(const QString& path);

    /// \brief Throws ToolError OutputFailed where \p path can be no file that is written: a directory,
    /// a file that is write-protected, or one in a directory that is not there.
    static void requireReplaceable(const QString& path);

    /// \brief Throws ToolError OutputFailed where something else than a directory stands at \p path.
    static void requireFolder(const QString& path);

    /// \brief True for "-", which add() takes for standard output; "./-" is a file of that name.
    static bool isStandardOutput(const QString& path);

    /// \brief True for an existing file that is neither a regular one nor a directory.
    static bool isDeviceOrPipe(const QString& path);

    /// \brief True for a terminal, and for standard output where that is one.
    static bool isTerminal(const QString& path);

    /// \brief True if \p path leads to the existing file \p other, through whatever links.
    static bool replaces(const QString& path, const QString& other);

    /// \brief The new file that a killed process could no longer give the name \p second after it
    /// had replaced \p first, both being of one set in this order; empty if there is none.
    static QString unfinished(const QString& first, const QString& second);

    /// \brief Flushes, checks and renames; throws ToolError OutputFailed with the targets
    /// untouched.
    void commit();

private:
    class CheckedFile;
    struct Entry;

    void release(Entry& entry);
    Descriptor lockDirectory() const;
    void replace();
    QString takeBack();
    void removeLeftovers();
    void removeOutdated();

    TemporaryName names_;
    std::vector<std::unique_ptr<Entry>> entries_;
    int heldCount_ = 0;                     ///< finished files that have kept their descriptor
    QSet<QString> directoriesWithReleased_; ///< those that hold their set's files in them
    QStringList madeDirectories_;
    QStringList removals_;
};

} // namespace Ovra::GeoTool
