// Fake drivers registered once per test program under keys of their own (the registry is
// process-wide and keeps drivers until unload). Tests reset them before use.
#ifndef TELVARRA_TESTS_FAKEREGISTRY_H
#define TELVARRA_TESTS_FAKEREGISTRY_H

#include "support/FakeDriver.h"

namespace telvarra::test {

constexpr Ruvo_CameraType kAlphaType = static_cast<Ruvo_CameraType>(11);
constexpr Ruvo_CameraType kBetaType = static_cast<Ruvo_CameraType>(12);

struct FakeDrivers {
    FakeDriver& alpha;
    FakeDriver& beta;
    void reset() {
        alpha.reset();
        beta.reset();
    }
};

// Registers "Alpha" (key 11) and "Beta" (key 12) on first use; both reset.
FakeDrivers& fakeDrivers();

}  // namespace telvarra::test

#endif
