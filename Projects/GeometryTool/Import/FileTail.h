#pragma once

#include <QByteArray>

class QFile;

namespace Ovra::GeoTool
{

/// \brief The end of a file, where many formats tell that it is whole.
class FileTail
{
public:
    /// \brief The last \p size bytes of \p file, or all of them; leaves it at its end.
    static QByteArray bytes(QFile& file, qint64 size);

    /// \brief The last line of \p file that is not empty, without space around it; of a longer one
    /// the last 400 bytes.
    static QByteArray lastLine(QFile& file);
};

} // namespace Ovra::GeoTool
