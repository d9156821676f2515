// The HikVision binding against the simulator: the whole library binds, and a library lacking
// any one of the 33 names (hidden through the lookup seam) is refused as a whole.
#include <gtest/gtest.h>

#include <string>

#include "drivers/hikvision/HikVisionBinding.h"
#include "platform/DynamicLibrary.h"
#include "sim/hikvision/HikSimControl.h"

using namespace telvarra;
using namespace telvarra::hikvision;

namespace {

// Whether the table holds a pointer for `name`.
bool isBound(const std::string& name) {
    bool bound = false;
    hikVisionSdk().forEachEntry([&](const char* entry, const auto& pointer, platform::Need) {
        if (name == entry) bound = pointer != nullptr;
    });
    return bound;
}

class HikVisionSdkLoaderTest : public ::testing::Test {
  protected:
    void TearDown() override {
        hikVisionBinding().setSymbolLookup({});
        hikVisionBinding().unload();
    }
};

TEST_F(HikVisionSdkLoaderTest, TheVendorFileNameBindsEveryFunctionOfTheLoadedSimulator) {
    EXPECT_EQ(hikVisionBinding().fileName(), platform::sharedLibraryFileName("MvCameraControl"));
    ASSERT_TRUE(hikVisionBinding().load());
    for (const char* name : HikVisionFunctions::kNames) EXPECT_TRUE(isBound(name)) << name;

    // The bound functions are the ones of the instance this program linked.
    HikSim_Reset();
    EXPECT_EQ(hikVisionSdk().MV_CC_GetSDKVersion(), HIKSIM_SDK_VERSION);
    EXPECT_EQ(HikSim_CallCount("MV_CC_GetSDKVersion"), 1u);
    HikSim_Reset();
}

TEST_F(HikVisionSdkLoaderTest, AMissingLibraryIsRefused) {
    EXPECT_FALSE(hikVisionBinding().load(platform::sharedLibraryFileName("NoSuchCameraSdk")));
    EXPECT_FALSE(hikVisionBinding().isLoaded());
}

TEST_F(HikVisionSdkLoaderTest, ALibraryLackingAnyOneNameIsRefusedWithEveryOtherBound) {
    for (const char* missing : HikVisionFunctions::kNames) {
        hikVisionBinding().setSymbolLookup(
            [&](const platform::DynamicLibrary& library, const char* name) -> void* {
                return std::string(name) == missing ? nullptr : library.symbol(name);
            });
        EXPECT_FALSE(hikVisionBinding().load()) << missing;
        // The loader keeps the library for its caller to release.
        EXPECT_TRUE(hikVisionBinding().isLoaded()) << missing;
        for (const char* name : HikVisionFunctions::kNames)
            EXPECT_EQ(isBound(name), std::string(name) != missing) << missing << ": " << name;
    }
}

}  // namespace
