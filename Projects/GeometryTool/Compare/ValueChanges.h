#pragma once

#include "CaseDifferences.h"
#include "Closeness.h"

#include <QVariant>

namespace Ovra::GeoTool
{

/// \brief Gathers which values of a subject are not close to one another.
class ValueChanges
{
public:
    explicit ValueChanges(const Closeness& closeness)
        : closeness_(closeness)
    {
    }

    /// \brief Takes \p what in if the values are not close.
    void compare(const QString& what, const QVariant& a, const QVariant& b);

    bool areNone() const { return changes_.empty(); }
    const std::vector<Change>& changes() const { return changes_; }

private:
    Closeness closeness_;
    std::vector<Change> changes_;
};

} // namespace Ovra::GeoTool
