#include "drivers/canon/CanonExposure.h"

#include <cstdio>

namespace telvarra::canon {

static_assert(16 + 22 <= sizeof(vendor::canon::EdsPropertyDesc::propDesc) /
                             sizeof(vendor::canon::EdsInt32) &&
                  22 <= RUVO_MAX_ENUM_ENTRIES,
              "every window lies inside the body's list and fits a host's record");

vendor::canon::EdsInt32 ExposureSetting::codeAt(std::uint32_t index) const {
    return m_description.propDesc[m_list.firstElement + index];
}

void ExposureSetting::findCurrentIndex() {
    for (std::uint32_t index = 0; index < m_list.indexCount; ++index) {
        if (codeAt(index) == m_currentCode) {
            m_index = index;
            return;
        }
    }
}

bool ExposureSetting::choose(std::uint32_t index) {
    if (index >= m_list.indexCount) return false;
    m_index = index;
    return true;
}

void ExposureSetting::describe(_RUVO_ENUM_VALUE& value) const {
    // Counted from nothing: a count the caller left in the record must not place entries
    // past its end.
    value.count = 0;
    for (std::uint32_t index = 0; index < m_list.indexCount; ++index) {
        _RUVO_ENUM_ENTRY& entry = value.entries[value.count++];
        entry = _RUVO_ENUM_ENTRY{};
        entry.value = index;
        std::snprintf(entry.symbolic, sizeof entry.symbolic, "%d", int(codeAt(index)));
        if (index == m_index) value.current = entry;
    }
}

}  // namespace telvarra::canon
