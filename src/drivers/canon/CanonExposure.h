// The three lists a host sets a Canon body's exposure from: shutter speed, aperture and ISO
// speed, each a fixed window of the codes the body reports as allowed, reached by small indexes
// rather than by the body's raw codes.
#ifndef TELVARRA_DRIVERS_CANON_CANONEXPOSURE_H
#define TELVARRA_DRIVERS_CANON_CANONEXPOSURE_H

#include <cstdint>

#include "telvarra/Types.h"
#include "vendor/canon/CanonSdk.h"

namespace telvarra::canon {

struct ExposureList {
    const char* getName;  // the enum value a host reads the list by
    const char* setName;  // the enum value a host sets an index by
    vendor::canon::EdsUInt32 propertyId;
    std::uint32_t firstElement;  // index 0 is this element of the body's list
    std::uint32_t indexCount;
};

// Shutter speed skips the body's first 16 codes on purpose: index 0 is Tv code number 16.
inline constexpr ExposureList kExposureLists[] = {
    {"GetShutterSpeedIndex", "SetShutterSpeedIndex", vendor::canon::kEdsPropID_Tv, 16, 22},
    {"GetApertureIndex", "SetApertureIndex", vendor::canon::kEdsPropID_Av, 0, 16},
    {"GetISOSpeedIndex", "SetISOSpeedIndex", vendor::canon::kEdsPropID_ISOSpeed, 0, 8},
};

// What a camera knows of one list: the body's description, its current code, and where that
// code stands in the list's window.
class ExposureSetting {
  public:
    explicit ExposureSetting(const ExposureList& list) : m_list(list) {}

    const ExposureList& list() const { return m_list; }
    vendor::canon::EdsPropertyDesc& description() { return m_description; }
    vendor::canon::EdsInt32& currentCode() { return m_currentCode; }
    std::uint32_t index() const { return m_index; }

    // The first position of the window holding the current code becomes the index; with none,
    // the index stays as it was.
    void findCurrentIndex();
    // False, and nothing changed, for an index outside the window.
    bool choose(std::uint32_t index);
    vendor::canon::EdsInt32 chosenCode() const { return codeAt(m_index); }
    // Every index of the window with its code in decimal, and the current one.
    void describe(_RUVO_ENUM_VALUE& value) const;

  private:
    vendor::canon::EdsInt32 codeAt(std::uint32_t index) const;

    const ExposureList& m_list;
    vendor::canon::EdsPropertyDesc m_description{};
    vendor::canon::EdsInt32 m_currentCode = 0;
    std::uint32_t m_index = 0;
};

}  // namespace telvarra::canon

#endif
