// The drivers every facade starts with. Declared here, below the drivers, and defined by the
// drivers layer (src/drivers/Drivers.cpp), so that no lower layer includes a make.
#ifndef TELVARRA_CORE_STANDARDDRIVERS_H
#define TELVARRA_CORE_STANDARDDRIVERS_H

#include <vector>

#include "platform/SdkBinding.h"

namespace telvarra {

// A make's SDK binding, named as its driver is.
struct MakeSdk {
    const char* make;
    const platform::SdkLibrary& library;
    platform::VersionReader readVersion;  // empty: the SDK cannot say, or is not asked
};

// Makes one driver of each make and registers it with the process-wide registry under its fixed
// key (MindVision 1, HikVision 2, Dvp 3, DaHeng 4, Canon 5). The registry outlives facades: from
// the second call on every key is taken, and the new drivers are dropped again.
void registerStandardDrivers();

// Each make's SDK binding, in registry key order.
std::vector<MakeSdk> standardSdks();

}  // namespace telvarra

#endif
