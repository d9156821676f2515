// The HikVision loader against the simulator: the whole library binds, a library lacking any one
// of the 33 names is refused as a whole, a missing library is refused.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "drivers/hikvision/HikVisionSdk.h"
#include "platform/DynamicLibrary.h"
#include "sim/hikvision/HikSimControl.h"

using namespace telvarra::hikvision;

namespace {

// Each bound name and whether the table holds a pointer for it, in table order.
std::vector<std::pair<std::string, bool>> boundNames() {
    std::vector<std::pair<std::string, bool>> names;
#define TELVARRA_TEST_BOUND(returnType, name, parameters) \
    names.emplace_back(#name, hikVisionSdk().name != nullptr);
    TELVARRA_HIKVISION_FUNCTIONS(TELVARRA_TEST_BOUND)
#undef TELVARRA_TEST_BOUND
    return names;
}

std::string variantPath(const std::string& name) {
    return std::string(TELVARRA_HIKSIM_VARIANTS_DIR) + "/hikvision-without-" + name + "/" +
           hikVisionSdkFileName();
}

class HikVisionSdkLoaderTest : public ::testing::Test {
  protected:
    void TearDown() override { unloadHikVisionSdk(); }
};

TEST_F(HikVisionSdkLoaderTest, TheVendorFileNameBindsEveryFunctionOfTheLoadedSimulator) {
    EXPECT_EQ(hikVisionSdkFileName(), telvarra::platform::sharedLibraryFileName("MvCameraControl"));
    ASSERT_EQ(loadHikVisionSdk(), kHikVisionSdkLoaded);
    EXPECT_TRUE(hikVisionSdkLibraryLoaded());
    for (const auto& [name, bound] : boundNames()) EXPECT_TRUE(bound) << name;

    // The bound functions are the ones of the instance this program linked.
    HikSim_Reset();
    EXPECT_EQ(hikVisionSdk().MV_CC_GetSDKVersion(), HIKSIM_SDK_VERSION);
    EXPECT_EQ(HikSim_CallCount("MV_CC_GetSDKVersion"), 1u);
    HikSim_Reset();
}

TEST_F(HikVisionSdkLoaderTest, AMissingLibraryIsRefusedAndTheTableLeftAlone) {
    ASSERT_EQ(loadHikVisionSdk(), kHikVisionSdkLoaded);
    const auto initialize = hikVisionSdk().MV_CC_Initialize;
    EXPECT_EQ(loadHikVisionSdk(std::string(TELVARRA_HIKSIM_VARIANTS_DIR) + "/no-such-folder/" +
                               hikVisionSdkFileName()),
              kHikVisionSdkFailed);
    EXPECT_FALSE(hikVisionSdkLibraryLoaded());
    EXPECT_EQ(hikVisionSdk().MV_CC_Initialize, initialize);
    EXPECT_EQ(loadHikVisionSdk(telvarra::platform::sharedLibraryFileName("NoSuchCameraSdk")),
              kHikVisionSdkFailed);
}

TEST_F(HikVisionSdkLoaderTest, UnloadingReleasesTheLibraryAndLeavesThePointers) {
    ASSERT_EQ(loadHikVisionSdk(), kHikVisionSdkLoaded);
    const auto finalize = hikVisionSdk().MV_CC_Finalize;
    unloadHikVisionSdk();
    EXPECT_FALSE(hikVisionSdkLibraryLoaded());
    EXPECT_EQ(hikVisionSdk().MV_CC_Finalize, finalize);
    unloadHikVisionSdk();  // twice is harmless
}

class HikVisionSdkVariantTest : public HikVisionSdkLoaderTest,
                                public ::testing::WithParamInterface<const char*> {};

TEST_P(HikVisionSdkVariantTest, ALibraryLackingOneNameIsRefusedAsAWhole) {
    const std::string missing = GetParam();
    const std::string path = variantPath(missing);

    // The variant really lacks that one name and has every other.
    telvarra::platform::DynamicLibrary variant;
    ASSERT_TRUE(variant.open(path)) << path << ": " << variant.lastError();
    for (const char* name : kHikVisionFunctionNames)
        EXPECT_EQ(variant.symbol(name) == nullptr, missing == name) << name;
    variant.close();

    ASSERT_EQ(loadHikVisionSdk(), kHikVisionSdkLoaded);
    EXPECT_EQ(loadHikVisionSdk(path), kHikVisionSdkFailed);
    // The loader keeps the library for its caller to release, with every other name bound.
    EXPECT_TRUE(hikVisionSdkLibraryLoaded());
    for (const auto& [name, bound] : boundNames()) EXPECT_EQ(bound, name != missing) << name;
    unloadHikVisionSdk();
    EXPECT_FALSE(hikVisionSdkLibraryLoaded());
}

INSTANTIATE_TEST_SUITE_P(EveryBoundName, HikVisionSdkVariantTest,
                         ::testing::ValuesIn(kHikVisionFunctionNames),
                         [](const auto& info) { return std::string(info.param); });

}  // namespace
