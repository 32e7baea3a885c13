#pragma once

#include <QString>
#include <QVariant>

#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief How findings show values that differ.
class ValueText
{
public:
    /// \brief Both values, in as many digits as tell them apart; of long texts the part about the
    ///        first character that differs. Where the texts are the same, types or bytes follow.
    /// \param a, b values that differ
    static std::pair<QString, QString> ofBoth(const QVariant& a, const QVariant& b);

    /// \brief A value as it stands; of a long one the beginning.
    static QString of(const QVariant& value);

    /// \brief "1, 2, 3", of many the first ten; "none" of none.
    static QString ofIds(const std::vector<int>& ids);

private:
    static QString whole(const QVariant& value, int depth);
    static QString wholeContainer(const QVariant& value, int depth);
};

} // namespace Ovra::GeoTool
