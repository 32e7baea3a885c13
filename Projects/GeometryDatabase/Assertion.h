#pragma once

#include <QtCore/qglobal.h>

/// \file
/// \brief OVRA_GEO_ASSERT.
/// \def OVRA_GEO_ASSERT(condition, text, where)
/// \brief An assertion that is active in every build and stops the process; it stands where going on
///        would write wrong solver input. The message has the form of Qt's own.
/// \param condition what must hold
/// \param text      the wording of the condition in the message, which hosts' logs search for
/// \param where     the source path in the message
#define OVRA_GEO_ASSERT(condition, text, where)                                                    \
    ((condition) ? static_cast<void>(0) : qt_assert((text), (where), __LINE__))
