#pragma once

#include <QString>
#include <QStringList>

namespace Ovra::GeoTool
{

class Descriptor;

/// \brief The names that stand beside an output file while it is replaced, and what is left of them
/// by a process that was killed.
///
/// FILE.TAG.part is the file that comes, FILE.TAG.old the one that goes. TAG is 16 random hexadecimal
/// digits, the same for all files of a set, and 8 that follow from them and FILE, so that no file of
/// a user's is taken for one of these. A process at work holds a lock on its new
/// files, or on one of the set in the same directory; what nobody holds is left over.
class TemporaryName
{
public:
    /// \brief Draws the random part.
    TemporaryName();

    /// \param target absolute path of the output file
    QString part(const QString& target) const;
    QString old(const QString& target) const;

    /// \brief A name that is never taken for a leftover, for a file that must stay.
    QString kept(const QString& target) const;

    /// \brief Tells other processes that the open \p file is in use, until it is closed.
    ///
    /// Waits for one that has found it before and is about to remove it. Does nothing where the file
    /// system has no locks; nothing is removed there either.
    static void hold(const Descriptor& file);

    /// \brief Removes what is left over beside \p targets, in their order.
    ///
    /// The caller holds a lock on the directory, within which alone files named old() come and go.
    static void removeLeftovers(const QStringList& targets);

    /// \brief The new file that a killed process could no longer give the name \p second after it
    /// had replaced \p first; empty if there is none.
    ///
    /// Both are absolute paths of a set whose temporary files are named and replaced in this order
    /// and removed in the opposite one.
    static QString unfinished(const QString& first, const QString& second);

private:
    QString beside(const QString& target, const QString& suffix) const;
    QString random_;
};

} // namespace Ovra::GeoTool
