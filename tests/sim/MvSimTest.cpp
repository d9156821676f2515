// Where the MindVision simulator must refuse as the SDK does, so that the driver cannot come to
// rely on leniency: the start rule, open and field-of-view refusals, lent frames given back to
// their borrower only, and aligned blocks. Frames themselves are compared with the pattern by the
// integration tests.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "platform/Platform.h"
#include "sim/common/RecordFields.h"
#include "sim/mindvision/MindVisionExports.h"
#include "sim/mindvision/MvSimControl.h"

namespace telvarra::test {
namespace {

using namespace telvarra::vendor::mindvision;
using Bytes = std::vector<std::uint8_t>;

struct Grab {
    tSdkFrameHead head{};
    BYTE* raw = nullptr;
};

class MvSimTest : public ::testing::Test {
  protected:
    void SetUp() override {
        MvSim_Reset();
        ASSERT_EQ(CameraSdkInit(0), CAMERA_STATUS_SUCCESS);
    }
    void TearDown() override { MvSim_Reset(); }

    static void addDevice(const std::string& line) {
        ASSERT_EQ(MvSim_AddDevice(line.c_str()), 0) << line << ": " << MvSim_LastError();
    }
    // CameraInit reads the serial number only.
    static tSdkCameraDevInfo recordNaming(const std::string& id) {
        tSdkCameraDevInfo record{};
        sim::writeField(record.acSn, id);
        return record;
    }
    static CameraHandle open(const std::string& id) {
        tSdkCameraDevInfo record = recordNaming(id);
        CameraHandle handle = 0;
        EXPECT_EQ(CameraInit(&record, PARAM_MODE_LAST_EXIT, PARAM_MODE_LAST_EXIT, &handle),
                  CAMERA_STATUS_SUCCESS)
            << id;
        return handle;
    }
    static CameraHandle startPlaying(const std::string& id) {
        const CameraHandle handle = open(id);
        EXPECT_EQ(CameraPlay(handle), CAMERA_STATUS_SUCCESS);
        return handle;
    }
    static Grab grab(CameraHandle handle) {
        Grab frame;
        EXPECT_EQ(CameraGetImageBufferPriority(handle, &frame.head, &frame.raw, 1000,
                                               CAMERA_GET_IMAGE_PRIORITY_NEWEST),
                  CAMERA_STATUS_SUCCESS);
        return frame;
    }
    static tSdkImageResolution fieldOfView(int left, int top, int width, int height) {
        tSdkImageResolution custom{};
        custom.iIndex = IMAGEOUT_MODE_CUSTOM;
        custom.iHOffsetFOV = left;
        custom.iVOffsetFOV = top;
        custom.iWidthFOV = custom.iWidth = width;
        custom.iHeightFOV = custom.iHeight = height;
        return custom;
    }
};

TEST_F(MvSimTest, TheLinuxLibraryNeedsCameraSdkInitFirstAndTheWindowsOneStartsItself) {
    MvSim_Reset();  // forgets the fixture's CameraSdkInit
    addDevice("id=G1 size=8x8");
    tSdkCameraDevInfo record = recordNaming("G1");
    CameraHandle handle = 0;
    EXPECT_EQ(CameraInit(&record, 0, 0, &handle),
              platform::kIsWindows ? CAMERA_STATUS_SUCCESS : CAMERA_STATUS_NOT_INITIALIZED);
    if (platform::kIsWindows) {
        EXPECT_EQ(CameraUnInit(handle), CAMERA_STATUS_SUCCESS);
    }
    EXPECT_EQ(CameraSdkInit(2), CAMERA_STATUS_PARAMETER_INVALID);
    ASSERT_EQ(CameraSdkInit(1), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(CameraInit(&record, 0, 0, &handle), CAMERA_STATUS_SUCCESS);
}

TEST_F(MvSimTest, OpeningRefusesBadArgumentsAndASecondOpenAndSettingsDoNotOutliveAnUnplug) {
    addDevice("id=O1");
    tSdkCameraDevInfo record = recordNaming("O1");
    tSdkCameraDevInfo unknown = recordNaming("O9");
    CameraHandle handle = 0;
    EXPECT_EQ(CameraInit(nullptr, 0, 0, &handle), CAMERA_STATUS_PARAMETER_INVALID);
    EXPECT_EQ(CameraInit(&record, 4, 0, &handle), CAMERA_STATUS_PARAMETER_INVALID);
    EXPECT_EQ(CameraInit(&unknown, 0, 0, &handle), CAMERA_STATUS_NO_DEVICE_FOUND);
    ASSERT_EQ(CameraInit(&record, 3, 0xFF, &handle), CAMERA_STATUS_SUCCESS);
    CameraHandle second = 0;
    EXPECT_EQ(CameraInit(&record, -1, -1, &second), CAMERA_STATUS_DEVICE_IS_OPENED);
    for (const CameraHandle never : {0, -1, handle + 1})
        EXPECT_EQ(CameraConnectTest(never), CAMERA_STATUS_PARAMETER_INVALID) << never;

    ASSERT_EQ(CameraSetRotate(handle, 2), CAMERA_STATUS_SUCCESS);
    ASSERT_EQ(MvSim_Unplug("O1"), 0);
    EXPECT_EQ(CameraConnectTest(handle), CAMERA_STATUS_DEVICE_LOST);
    EXPECT_EQ(CameraUnInit(handle), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(CameraUnInit(handle), CAMERA_STATUS_DEVICE_IS_CLOSED);
    ASSERT_EQ(MvSim_Replug("O1"), 0);
    int rotation = -1;
    ASSERT_EQ(CameraGetRotate(open("O1"), &rotation), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(rotation, 0);
}

TEST_F(MvSimTest, ACustomResolutionIsACropInsideTheSensorAndNothingElse) {
    addDevice("id=R1 size=64x48");
    const CameraHandle handle = open("R1");
    const tSdkImageResolution custom = fieldOfView(44, 5, 20, 10);
    const struct {
        CameraSdkStatus status;
        void (*change)(tSdkImageResolution&);
    } refusals[] = {
        {CAMERA_STATUS_NOT_SUPPORTED, [](tSdkImageResolution& r) { r.iWidth = 10; }},
        {CAMERA_STATUS_NOT_SUPPORTED, [](tSdkImageResolution& r) { r.iHeightZoomSw = 5; }},
        {CAMERA_STATUS_PARAMETER_OUT_OF_BOUND, [](tSdkImageResolution& r) { r.iHOffsetFOV = 45; }},
        {CAMERA_STATUS_PARAMETER_OUT_OF_BOUND, [](tSdkImageResolution& r) { r.iVOffsetFOV = -1; }},
        {CAMERA_STATUS_PARAMETER_OUT_OF_BOUND,
         [](tSdkImageResolution& r) { r.iWidthFOV = r.iWidth = 0; }},
        {CAMERA_STATUS_PARAMETER_INVALID, [](tSdkImageResolution& r) { r.iIndex = 1; }},
    };
    for (const auto& refusal : refusals) {
        tSdkImageResolution wrong = custom;
        refusal.change(wrong);
        EXPECT_EQ(CameraSetImageResolution(handle, &wrong), refusal.status);
    }
    int x = 0, y = 0, width = 0, height = 0;
    tSdkImageResolution accepted = custom;
    ASSERT_EQ(CameraSetImageResolution(handle, &accepted), CAMERA_STATUS_SUCCESS);
    ASSERT_EQ(MvSim_Resolution("R1", &x, &y, &width, &height), 0);
    EXPECT_EQ(std::vector<int>({x, y, width, height}), std::vector<int>({44, 5, 20, 10}));
}

TEST_F(MvSimTest, LentFramesGoBackOnlyToTheirHandleAndProcessingKeepsThemLent) {
    addDevice("id=L1 size=4x4");
    addDevice("id=L2 size=4x4");
    const CameraHandle first = startPlaying("L1");
    const CameraHandle second = startPlaying("L2");
    const Grab a = grab(first), b = grab(first), c = grab(second);
    EXPECT_EQ(MvSim_OutstandingBuffers(), 3u);
    Bytes out(48);
    tSdkFrameHead head = a.head;
    EXPECT_EQ(CameraImageProcess(first, c.raw, out.data(), &head), CAMERA_STATUS_PARAMETER_INVALID);
    EXPECT_EQ(CameraImageProcess(first, a.raw + 1, out.data(), &head),
              CAMERA_STATUS_PARAMETER_INVALID);
    EXPECT_EQ(CameraImageProcess(first, a.raw, a.raw, &head), CAMERA_STATUS_PARAMETER_INVALID);
    EXPECT_EQ(head.uiMediaType, CAMERA_MEDIA_TYPE_MONO8);  // refusals leave it alone
    ASSERT_EQ(CameraImageProcess(first, a.raw, out.data(), &head), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(MvSim_OutstandingBuffers(), 3u);

    EXPECT_EQ(CameraReleaseImageBuffer(second, a.raw), CAMERA_STATUS_PARAMETER_INVALID);
    EXPECT_EQ(CameraReleaseImageBuffer(first, a.raw), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(CameraReleaseImageBuffer(first, a.raw), CAMERA_STATUS_PARAMETER_INVALID);
    // The borrower gives its frames back after UnInit and after an unplug too.
    ASSERT_EQ(CameraUnInit(first), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(CameraReleaseImageBuffer(first, b.raw), CAMERA_STATUS_SUCCESS);
    ASSERT_EQ(MvSim_Unplug("L2"), 0);
    head = c.head;
    EXPECT_EQ(CameraImageProcess(second, c.raw, out.data(), &head), CAMERA_STATUS_DEVICE_LOST);
    EXPECT_EQ(CameraReleaseImageBuffer(second, c.raw), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(MvSim_OutstandingBuffers(), 0u);
}

// Counting the blocks is seen through the camera; alignment and refusals are not.
TEST_F(MvSimTest, AlignedBlocksAreAlignedAndBadRequestsAreRefused) {
    BYTE* block = CameraAlignMalloc(100, 64);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 64, 0u);
    const std::pair<int, int> refused[] = {{0, 16}, {-8, 16}, {16, 0}, {16, 24}};
    for (const auto& [size, align] : refused)
        EXPECT_EQ(CameraAlignMalloc(size, align), nullptr) << size << ", " << align;
    CameraAlignFree(block);
    EXPECT_EQ(MvSim_AlignedBlocks(), 0u);
}

}  // namespace
}  // namespace telvarra::test
