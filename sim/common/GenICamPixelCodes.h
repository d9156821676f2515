// The GenICam pixel-format codes (PFNC) of the formats a virtual camera delivers, as the
// HikVision, DaHeng and MindVision SDKs report and accept them. Written out here on their own:
// the driver keeps its own table, so that a wrong code cannot pass both.
#ifndef TELVARRA_SIM_COMMON_GENICAMPIXELCODES_H
#define TELVARRA_SIM_COMMON_GENICAMPIXELCODES_H

#include <cstdint>
#include <optional>

#include "sim/common/PixelFormat.h"

namespace telvarra::sim {

std::uint32_t genicamPixelCode(PixelFormat format);

// Any other code gives nullopt. Takes the value as wide as a vendor field holds it (HikVision's
// pixel-type field is 8 bytes on Linux).
std::optional<PixelFormat> formatOfGenICamCode(std::int64_t code);

}  // namespace telvarra::sim

#endif
