#pragma once

#include "GmshFormat.h"

#include <QStringList>

namespace Ovra::GeoTool
{

class CaseView;

/// \brief What of a case has no place in a format, in words.
class ExportLosses
{
public:
    ExportLosses(const CaseView& view, const GmshFormat& format);

    /// \brief A phrase for each loss: "STL holds surfaces alone: 12 elements of 2 regions are left
    /// out".
    QStringList all() const { return phrases_; }

private:
    void addElements();
    void addRegions();
    void addEmptyRegions();
    void addNames();
    void addStrayElements();
    void addModelAttributes();
    void addMeshAttributes();
    int attributedEntities() const;

    const CaseView& view_;
    const GmshFormat& format_;
    QStringList phrases_;
};

} // namespace Ovra::GeoTool
