// One reference to an object the Canon SDK handed out, released when it goes out of scope. The
// SDK counts references: every object it gives starts with one that the receiver must release.
#ifndef TELVARRA_DRIVERS_CANON_CANONOBJECT_H
#define TELVARRA_DRIVERS_CANON_CANONOBJECT_H

#include <utility>

#include "drivers/canon/CanonBinding.h"

namespace telvarra::canon {

class CanonObject {
  public:
    CanonObject() = default;
    explicit CanonObject(sdk::EdsBaseRef object) : m_object(object) {}
    ~CanonObject() { reset(); }
    CanonObject(CanonObject&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    CanonObject& operator=(CanonObject&& other) noexcept {
        if (this != &other) {
            reset();
            m_object = std::exchange(other.m_object, nullptr);
        }
        return *this;
    }
    CanonObject(const CanonObject&) = delete;
    CanonObject& operator=(const CanonObject&) = delete;

    sdk::EdsBaseRef get() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }
    // Where an SDK call writes a new object: the one held before is released first.
    sdk::EdsBaseRef* receive() {
        reset();
        return &m_object;
    }
    // EdsRelease answers the count left, not an error: nothing to check.
    void reset() {
        if (m_object) canonSdk().EdsRelease(m_object);
        m_object = nullptr;
    }

  private:
    sdk::EdsBaseRef m_object = nullptr;
};

}  // namespace telvarra::canon

#endif
