#pragma once

#include "Descriptor.h"

#include <QString>

#include <system_error>

namespace Ovra::GeoTool
{

/// \brief A new file on its way to its name.
///
/// It has no name at all where the file system can do that, and so leaves nothing behind when the
/// process is killed; elsewhere it stands under a temporary one from the start. It is removed
/// unless it has reached its target.
class PartFile
{
public:
    /// \param name temporary name beside the target, of TemporaryName
    explicit PartFile(const QString& name);
    ~PartFile();
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;

    /// \brief Creates the empty file, with the permissions of \p target if that exists.
    std::error_code create(const QString& target);

    /// \brief Another descriptor of the file, for writing; none if the system has no more.
    Descriptor openForWriting() const;

    /// \brief Lets it stand under its temporary name.
    std::error_code giveName();

    /// \brief Closes it; it has its name, and holds it no longer.
    /// \pre giveName()
    void release() { file_ = Descriptor(); }

    /// \brief Renames it from its temporary name, whatever stands at \p target.
    std::error_code moveTo(const QString& target);

private:
    bool createUnnamed();
    bool createNamed();
    bool isLinked() const;
    QByteArray linkToDescriptor() const;

    QString name_;
    Descriptor file_;
    bool isNamed_ = false;
};

} // namespace Ovra::GeoTool
