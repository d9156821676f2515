// The HikVision tests' set-up: the shared one of every make, on the HikVision simulator.
#ifndef TELVARRA_TESTS_HIKVISIONFIXTURE_H
#define TELVARRA_TESTS_HIKVISIONFIXTURE_H

#include <vector>

#include "sim/hikvision/HikSimControl.h"
#include "suite/MakeFixture.h"

namespace telvarra::test {

using Bytes = std::vector<unsigned char>;

inline const SimulatorControl kHikVisionSimulator = TELVARRA_SIMULATOR_CONTROL(HikSim);

class HikVisionTest : public MakeFixtureTest {
  protected:
    HikVisionTest() : MakeFixtureTest(kHikVisionSimulator, RUVO_CAMERA_HIKVISION) {}
};

}  // namespace telvarra::test

#endif
