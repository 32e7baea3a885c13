#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace Ovra::GeoTool
{

/// \brief A key that one object of a JSON text has twice, of which Qt would keep the last without a
/// word.
struct RepeatedKey
{
    QString key;
    qsizetype offset = 0; ///< byte of the text at which the later one begins

    /// \brief The first in \p json, which must be well-formed; nothing if there is none.
    static std::optional<RepeatedKey> in(const QByteArray& json);
};

} // namespace Ovra::GeoTool
