#pragma once

#include "AttributeMap.h"
#include "Box.h"
#include "Matrix.h"
#include "RefinementRegion.h"
#include "Vector.h"
#include "Version.h"

#include <QMetaType>
#include <QStringList>
#include <QVariant>

// What a static object of a host sees of the library: everything is gathered by the constructor, so
// that a static probe asks during start-up, and the destructor asks again while the program ends.
class StartUpProbe
{
public:
    StartUpProbe();
    ~StartUpProbe();
    StartUpProbe(const StartUpProbe&) = delete;
    StartUpProbe& operator=(const StartUpProbe&) = delete;

    // The names of everything that was not as it should be.
    QStringList faults() const { return faults_; }

private:
    void check(bool good, const char* what);
    void checkVocabulary();
    void checkAliasedMetaTypes();
    void checkStoredVariant();

    QStringList faults_;
};

#if defined(OVRA_GEO_PROBE_BUILD)
#define OVRA_GEO_PROBE_EXPORT Q_DECL_EXPORT
#else
#define OVRA_GEO_PROBE_EXPORT
#endif

// The faults that a static object in another file saw: in the probe library, or in this executable.
OVRA_GEO_PROBE_EXPORT QStringList faultsSeenElsewhere();
