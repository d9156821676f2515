// What the MindVision simulator promises beyond what the camera tests see: the start rule, the
// enumeration order, handle numbering, the custom field of view and the mosaic its offset gives,
// the software ISP's conversion, lent frames given back to their borrower only, and aligned
// blocks. Mirrors and turns are checked against independent pictures by the shared suite. The test
// program links the simulator and calls its vendor and control functions directly.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "platform/Platform.h"
#include "sim/common/ImageOps.h"
#include "sim/common/PixelFormat.h"
#include "sim/common/RecordFields.h"
#include "sim/common/TestPattern.h"
#include "sim/mindvision/MindVisionExports.h"
#include "sim/mindvision/MvSimControl.h"

namespace telvarra::test {
namespace {

using namespace telvarra::vendor::mindvision;
using Bytes = std::vector<std::uint8_t>;
using sim::PixelFormat;

struct Grab {
    tSdkFrameHead head{};
    BYTE* raw = nullptr;
    Bytes bytes() const { return Bytes(raw, raw + head.uBytes); }
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
    BYTE* block = CameraAlignMalloc(16, 16);
    EXPECT_EQ(block != nullptr, platform::kIsWindows);
    EXPECT_EQ(CameraInit(&record, 0, 0, &handle),
              platform::kIsWindows ? CAMERA_STATUS_SUCCESS : CAMERA_STATUS_NOT_INITIALIZED);
    CameraAlignFree(block);
    if (platform::kIsWindows) {
        EXPECT_EQ(CameraUnInit(handle), CAMERA_STATUS_SUCCESS);
    }
    EXPECT_EQ(CameraSdkInit(2), CAMERA_STATUS_PARAMETER_INVALID);
    ASSERT_EQ(CameraSdkInit(1), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(CameraSdkInit(0), CAMERA_STATUS_SUCCESS);  // again: harmless
    EXPECT_EQ(CameraInit(&record, 0, 0, &handle), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(MvSim_AlignedBlocks(), 0u);
}

TEST_F(MvSimTest, EnumerationSortsByFriendlyNameStablyUpToTheCapacity) {
    addDevice("id=E1 user=Zed");
    addDevice("id=E2");  // no user name: the id is the friendly name
    addDevice("id=E3 user=Alpha");
    addDevice("id=E4 user=Alpha");
    addDevice("id=E5 user=Beta");
    MvSim_Unplug("E5");
    std::vector<tSdkCameraDevInfo> list(5);
    std::memset(list.data(), 0xEE, list.size() * sizeof(tSdkCameraDevInfo));
    INT count = 3;
    ASSERT_EQ(CameraEnumerateDevice(list.data(), &count), CAMERA_STATUS_SUCCESS);
    ASSERT_EQ(count, 3);
    EXPECT_EQ(static_cast<unsigned char>(list[3].acProductSeries[0]), 0xEE);  // not written
    const char* order[] = {"E3", "E4", "E2"};
    for (UINT i = 0; i < 3; ++i) {
        EXPECT_STREQ(list[i].acSn, order[i]);
        EXPECT_EQ(list[i].uInstance, i);
    }
    count = 5;
    ASSERT_EQ(CameraEnumerateDevice(list.data(), &count), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(count, 4);
    EXPECT_STREQ(list[3].acFriendlyName, "Zed");
    EXPECT_EQ(CameraEnumerateDevice(nullptr, &count), CAMERA_STATUS_PARAMETER_INVALID);
    for (const char* id : {"E1", "E2", "E3", "E4"}) MvSim_Unplug(id);
    EXPECT_EQ(CameraEnumerateDevice(list.data(), &count), CAMERA_STATUS_NO_DEVICE_FOUND);
    EXPECT_EQ(count, 0);
}

TEST_F(MvSimTest, OpeningChecksItsArgumentsAndTheDeviceAndNumbersHandlesInTurn) {
    addDevice("id=O1");
    addDevice("id=O2");
    tSdkCameraDevInfo record = recordNaming("O1");
    tSdkCameraDevInfo unknown = recordNaming("O9");
    CameraHandle handle = 0;
    EXPECT_EQ(CameraInit(nullptr, 0, 0, &handle), CAMERA_STATUS_PARAMETER_INVALID);
    EXPECT_EQ(CameraInit(&record, 4, 0, &handle), CAMERA_STATUS_PARAMETER_INVALID);
    EXPECT_EQ(CameraInit(&unknown, 0, 0, &handle), CAMERA_STATUS_NO_DEVICE_FOUND);
    ASSERT_EQ(CameraInit(&record, 3, 0xFF, &handle), CAMERA_STATUS_SUCCESS);
    EXPECT_GE(handle, 1);
    CameraHandle second = 0;
    EXPECT_EQ(CameraInit(&record, -1, -1, &second), CAMERA_STATUS_DEVICE_IS_OPENED);
    EXPECT_EQ(open("O2"), handle + 1);  // the refusal took no number

    ASSERT_EQ(CameraUnInit(handle), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(CameraUnInit(handle), CAMERA_STATUS_DEVICE_IS_CLOSED);
    for (const CameraHandle never : {0, -1, handle + 2})
        EXPECT_EQ(CameraConnectTest(never), CAMERA_STATUS_PARAMETER_INVALID) << never;
    // An unplug loses the session; settings do not outlive it.
    ASSERT_EQ(CameraSetRotate(handle + 1, 2), CAMERA_STATUS_SUCCESS);
    ASSERT_EQ(MvSim_Unplug("O2"), 0);
    EXPECT_EQ(CameraConnectTest(handle + 1), CAMERA_STATUS_DEVICE_LOST);
    EXPECT_EQ(CameraUnInit(handle + 1), CAMERA_STATUS_SUCCESS);
    ASSERT_EQ(MvSim_Replug("O2"), 0);
    int rotation = -1;
    ASSERT_EQ(CameraGetRotate(open("O2"), &rotation), CAMERA_STATUS_SUCCESS);
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
    ASSERT_EQ(MvSim_Resolution("R1", &x, &y, &width, &height), 0);
    EXPECT_EQ(std::vector<int>({x, y, width, height}), std::vector<int>({0, 0, 64, 48}));
    tSdkImageResolution accepted = custom;
    ASSERT_EQ(CameraSetImageResolution(handle, &accepted), CAMERA_STATUS_SUCCESS);
    ASSERT_EQ(MvSim_Resolution("R1", &x, &y, &width, &height), 0);
    EXPECT_EQ(std::vector<int>({x, y, width, height}), std::vector<int>({44, 5, 20, 10}));
}

TEST_F(MvSimTest, ARawFrameIsTheFieldOfViewWithTheMosaicSeenFromItsOffset) {
    addDevice("id=B1 size=16x12 format=bayer_bg8");
    const CameraHandle handle = startPlaying("B1");
    unsigned int seed = 0;
    ASSERT_EQ(MvSim_DeviceSeed("B1", &seed), 0);
    const struct {
        int left, top;
        UINT mosaic;
    } offsets[] = {{0, 0, CAMERA_MEDIA_TYPE_BAYBG8},
                   {1, 0, CAMERA_MEDIA_TYPE_BAYGB8},
                   {0, 1, CAMERA_MEDIA_TYPE_BAYGR8},
                   {11, 7, CAMERA_MEDIA_TYPE_BAYRG8}};
    std::uint32_t number = 0;
    for (const auto& offset : offsets) {
        tSdkImageResolution region = fieldOfView(offset.left, offset.top, 5, 4);
        ASSERT_EQ(CameraSetImageResolution(handle, &region), CAMERA_STATUS_SUCCESS);
        const Grab frame = grab(handle);
        EXPECT_EQ(frame.head.uiMediaType, offset.mosaic) << offset.left << ", " << offset.top;
        ASSERT_EQ(frame.head.uBytes, 20u);
        EXPECT_EQ(frame.head.iWidth, 5);
        // The whole sensor's frame, cut here.
        Bytes full(16 * 12), cut;
        sim::renderFrame({"B1", "mindvision", seed, 16, 12}, PixelFormat::BayerBG8, ++number, 16,
                         12, full.data());
        for (int y = offset.top; y < offset.top + 4; ++y)
            for (int x = offset.left; x < offset.left + 5; ++x) cut.push_back(full[y * 16 + x]);
        EXPECT_EQ(frame.bytes(), cut);
        ASSERT_EQ(CameraReleaseImageBuffer(handle, frame.raw), CAMERA_STATUS_SUCCESS);
    }
}

TEST_F(MvSimTest, ImageProcessConvertsTheRawFrameToTheIspFormat) {
    addDevice("id=P1 size=6x4 format=bayer_rg8");
    addDevice("id=P3 size=4x2 format=bgr8");
    // A Bayer crop at an odd offset: its own mosaic (GR) demosaiced, in BGR order by default.
    const CameraHandle bayer = startPlaying("P1");
    tSdkImageResolution region = fieldOfView(1, 0, 4, 4);
    ASSERT_EQ(CameraSetImageResolution(bayer, &region), CAMERA_STATUS_SUCCESS);
    Grab frame = grab(bayer);
    Bytes rgb(48);
    sim::demosaicBilinear(PixelFormat::BayerGR8, frame.raw, 4, 4, rgb.data());
    Bytes out(48 + 8, 0x5A);
    ASSERT_EQ(CameraImageProcess(bayer, frame.raw, out.data(), &frame.head), CAMERA_STATUS_SUCCESS);
    for (std::size_t p = 0; p < 16; ++p)
        for (std::size_t c = 0; c < 3; ++c) ASSERT_EQ(out[p * 3 + c], rgb[p * 3 + 2 - c]) << p;
    EXPECT_EQ(Bytes(out.begin() + 48, out.end()), Bytes(8, 0x5A));
    EXPECT_EQ(frame.head.uiMediaType, CAMERA_MEDIA_TYPE_BGR8);
    EXPECT_EQ(frame.head.uBytes, 48u);

    // A colour sensor to grey, with the weights written out here.
    const CameraHandle colour = startPlaying("P3");
    EXPECT_EQ(CameraSetIspOutFormat(colour, CAMERA_MEDIA_TYPE_RGBA8), CAMERA_STATUS_NOT_SUPPORTED);
    ASSERT_EQ(CameraSetIspOutFormat(colour, CAMERA_MEDIA_TYPE_MONO8), CAMERA_STATUS_SUCCESS);
    frame = grab(colour);
    const Bytes bgr = frame.bytes();
    ASSERT_EQ(CameraImageProcess(colour, frame.raw, out.data(), &frame.head),
              CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(frame.head.uiMediaType, CAMERA_MEDIA_TYPE_MONO8);
    EXPECT_EQ(frame.head.uBytes, 8u);
    for (std::size_t p = 0; p < 8; ++p)
        EXPECT_EQ(out[p],
                  (77 * bgr[p * 3 + 2] + 150 * bgr[p * 3 + 1] + 29 * bgr[p * 3] + 128) >> 8);
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
TEST_F(MvSimTest, AlignedBlocksAreAlignedAndBadRequestsOrFreesAreRefused) {
    BYTE* block = CameraAlignMalloc(100, 64);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 64, 0u);
    std::memset(block, 0x11, 100);  // all of it is the caller's (the sanitizer checks)
    const std::pair<int, int> refused[] = {{0, 16}, {-8, 16}, {16, 0}, {16, 24}};
    for (const auto& [size, align] : refused)
        EXPECT_EQ(CameraAlignMalloc(size, align), nullptr) << size << ", " << align;
    BYTE local = 0;
    CameraAlignFree(&local);  // not the SDK's: left alone
    CameraAlignFree(block);
    CameraAlignFree(block);  // twice: no longer known, left alone
    EXPECT_EQ(MvSim_AlignedBlocks(), 0u);
}

}  // namespace
}  // namespace telvarra::test
