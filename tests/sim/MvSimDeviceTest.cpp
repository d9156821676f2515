// The MindVision simulator's start rule, device list, handles, capability record, field of view
// and aligned memory: what the library's own suite does not reach.
#include <cstdint>
#include <utility>

#include "MvSimFixture.h"
#include "platform/Platform.h"

namespace telvarra::test {
namespace {

// A 32-byte text field at its absolute offset in a record.
std::string textAt(const void* record, std::size_t offset) {
    const char* field = static_cast<const char*>(record) + offset;
    const void* end = std::memchr(field, 0, 32);
    return std::string(field, end ? static_cast<const char*>(end) - field : 32);
}

template <class T>
T valueAt(const void* record, std::size_t offset) {
    T value{};
    std::memcpy(&value, static_cast<const char*>(record) + offset, sizeof value);
    return value;
}

TEST_F(MvSimTest, TheLinuxLibraryNeedsCameraSdkInitFirstAndTheWindowsOneStartsItself) {
    MvSim_Reset();  // forgets the fixture's CameraSdkInit
    addDevice("id=G1 size=8x8");
    tSdkCameraDevInfo record = recordNaming("G1");
    CameraHandle handle = 0;
    BYTE* block = CameraAlignMalloc(16, 16);
    if (platform::kIsWindows) {
        EXPECT_NE(block, nullptr);
        EXPECT_EQ(CameraPause(), CAMERA_STATUS_NOT_SUPPORTED);
        EXPECT_EQ(CameraInit(&record, 0, 0, &handle), CAMERA_STATUS_SUCCESS);
        EXPECT_EQ(CameraUnInit(handle), CAMERA_STATUS_SUCCESS);
    } else {
        EXPECT_EQ(block, nullptr);
        EXPECT_EQ(CameraPause(), CAMERA_STATUS_NOT_INITIALIZED);  // the other names too
        EXPECT_EQ(CameraInit(&record, 0, 0, &handle), CAMERA_STATUS_NOT_INITIALIZED);
    }
    CameraAlignFree(block);
    EXPECT_EQ(CameraSdkInit(2), CAMERA_STATUS_PARAMETER_INVALID);
    ASSERT_EQ(CameraSdkInit(1), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(CameraSdkInit(0), CAMERA_STATUS_SUCCESS);  // again: harmless
    EXPECT_EQ(CameraInit(&record, 0, 0, &handle), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(CameraGrabber_Destroy(), CAMERA_STATUS_NOT_SUPPORTED);
    EXPECT_EQ(MvSim_CallCount("CameraGrabber_Destroy"), 1u);
    EXPECT_EQ(MvSim_AlignedBlocks(), 0u);
}

TEST_F(MvSimTest, EnumerationSortsByFriendlyNameStablyUpToTheCapacity) {
    addDevice("id=E1 user=Zed");
    addDevice("id=E2");  // no user name: the id is the friendly name
    addDevice("id=E3 user=Alpha layer=gige model=MV-GE134GM");
    addDevice("id=E4 user=Alpha format=bayer_rg8");
    addDevice("id=E5 user=Beta");
    MvSim_Unplug("E5");
    std::vector<tSdkCameraDevInfo> list(5);
    std::memset(list.data(), 0xEE, list.size() * sizeof(tSdkCameraDevInfo));
    INT count = 3;
    ASSERT_EQ(CameraEnumerateDevice(list.data(), &count), CAMERA_STATUS_SUCCESS);
    ASSERT_EQ(count, 3);
    EXPECT_EQ(static_cast<unsigned char>(list[3].acProductSeries[0]), 0xEE);  // not written
    const char* order[] = {"E3", "E4", "E2"};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(textAt(&list[i], 224), order[i]);
        EXPECT_EQ(valueAt<UINT>(&list[i], 256), static_cast<UINT>(i));
    }
    EXPECT_EQ(textAt(&list[0], 0), "MV-GE");
    EXPECT_EQ(textAt(&list[0], 32), "MV-GE134GM");
    EXPECT_EQ(textAt(&list[0], 64), "Alpha");
    EXPECT_EQ(textAt(&list[0], 96), "GigE");
    EXPECT_EQ(textAt(&list[0], 192), "GigE");
    EXPECT_NE(textAt(&list[0], 160), textAt(&list[1], 160));  // mono and colour sensors
    EXPECT_EQ(textAt(&list[1], 96), "USB3.0");
    EXPECT_EQ(textAt(&list[2], 64), "E2");
    count = 5;
    ASSERT_EQ(CameraEnumerateDevice(list.data(), &count), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(count, 4);
    EXPECT_EQ(textAt(&list[3], 64), "Zed");
    EXPECT_EQ(CameraEnumerateDevice(nullptr, &count), CAMERA_STATUS_PARAMETER_INVALID);

    for (const char* id : {"E1", "E2", "E3", "E4"}) MvSim_Unplug(id);
    count = 5;
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
    EXPECT_EQ(CameraInit(&record, 0, 4, &handle), CAMERA_STATUS_PARAMETER_INVALID);
    EXPECT_EQ(CameraInit(&unknown, 0, 0, &handle), CAMERA_STATUS_NO_DEVICE_FOUND);
    // Handles count up from 1 in the process, never reused, not even across resets.
    ASSERT_EQ(CameraInit(&record, 3, 0xFF, &handle), CAMERA_STATUS_SUCCESS);
    EXPECT_GE(handle, 1);
    CameraHandle second = 0;
    EXPECT_EQ(CameraInit(&record, -1, -1, &second), CAMERA_STATUS_DEVICE_IS_OPENED);
    EXPECT_EQ(open("O2"), handle + 1);  // the refusal took no number

    ASSERT_EQ(CameraUnInit(handle), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(CameraUnInit(handle), CAMERA_STATUS_DEVICE_IS_CLOSED);
    EXPECT_EQ(CameraConnectTest(handle), CAMERA_STATUS_DEVICE_IS_CLOSED);
    for (const CameraHandle never : {0, -1, handle + 2})
        EXPECT_EQ(CameraConnectTest(never), CAMERA_STATUS_PARAMETER_INVALID) << never;
}

TEST_F(MvSimTest, SettingsLastAcrossSessionsButNotAcrossAnUnplug) {
    addDevice("id=U1 size=32x24");
    CameraHandle handle = open("U1");
    ASSERT_EQ(CameraSetRotate(handle, 2), CAMERA_STATUS_SUCCESS);
    ASSERT_EQ(CameraUnInit(handle), CAMERA_STATUS_SUCCESS);
    handle = open("U1");
    int rotation = 0;
    ASSERT_EQ(CameraGetRotate(handle, &rotation), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(rotation, 2);

    ASSERT_EQ(MvSim_Unplug("U1"), 0);
    EXPECT_EQ(CameraConnectTest(handle), CAMERA_STATUS_DEVICE_LOST);
    EXPECT_EQ(CameraGetRotate(handle, &rotation), CAMERA_STATUS_DEVICE_LOST);
    EXPECT_EQ(CameraUnInit(handle), CAMERA_STATUS_SUCCESS);
    ASSERT_EQ(MvSim_Replug("U1"), 0);
    handle = open("U1");
    ASSERT_EQ(CameraGetRotate(handle, &rotation), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(rotation, 0);
}

TEST_F(MvSimTest, CapabilityRecordCarriesTheRangesAndSensorAtTheDocumentedOffsets) {
    addDevice("id=C1 size=1280x1024 format=mono8");
    addDevice("id=C2 size=640x480 format=bayer_gr8");
    ASSERT_EQ(MvSim_SetAeTargetRange("C1", 30, 200), 0);
    ASSERT_EQ(MvSim_SetAnalogGainRange("C1", 8, 64), 0);
    ASSERT_EQ(MvSim_SetExposureRange("C1", 20.0, 500000.0), 0);
    EXPECT_EQ(MvSim_SetAnalogGainRange("C1", 100, 90), -1);
    std::vector<unsigned char> record(sizeof(tSdkCameraCapbility));
    auto* capability = reinterpret_cast<tSdkCameraCapbility*>(record.data());
    ASSERT_EQ(CameraGetCapability(open("C1"), capability), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(valueAt<UINT>(capability, 188), 30u);
    EXPECT_EQ(valueAt<UINT>(capability, 192), 200u);
    EXPECT_EQ(valueAt<UINT>(capability, 196), 8u);
    EXPECT_EQ(valueAt<UINT>(capability, 200), 64u);
    EXPECT_EQ(valueAt<float>(capability, 204), 0.125f);
    EXPECT_EQ(valueAt<UINT>(capability, 208), 2u);  // exposure in 10 us lines
    EXPECT_EQ(valueAt<UINT>(capability, 212), 50000u);
    EXPECT_EQ(valueAt<INT>(capability, 216), 1024);
    EXPECT_EQ(valueAt<INT>(capability, 224), 1280);
    EXPECT_EQ(valueAt<BOOL>(capability, 304), 1);
    EXPECT_EQ(valueAt<void*>(capability, 16), nullptr);  // no descriptor arrays

    ASSERT_EQ(CameraGetCapability(open("C2"), capability), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(valueAt<BOOL>(capability, 304), 0);
    EXPECT_EQ(valueAt<INT>(capability, 224), 640);
    EXPECT_EQ(valueAt<UINT>(capability, 192), 250u);  // the default range
}

TEST_F(MvSimTest, ACustomResolutionIsACropInsideTheSensorAndNothingElse) {
    addDevice("id=R1 size=64x48");
    const CameraHandle handle = open("R1");
    tSdkImageResolution current{};
    ASSERT_EQ(CameraGetImageResolution(handle, &current), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(current.iIndex, 0);
    EXPECT_STREQ(current.acDescription, "Full");
    EXPECT_EQ(current.iHeight, 48);
    // As the vendor's samples do it: the current record, made custom.
    tSdkImageResolution custom = current;
    custom.iIndex = IMAGEOUT_MODE_CUSTOM;
    custom.iHOffsetFOV = 44;
    custom.iVOffsetFOV = 5;
    custom.iWidthFOV = custom.iWidth = 20;
    custom.iHeightFOV = custom.iHeight = 10;
    ASSERT_EQ(CameraSetImageResolution(handle, &custom), CAMERA_STATUS_SUCCESS);

    const auto refused = [&](CameraSdkStatus status, auto change) {
        tSdkImageResolution wrong = custom;
        change(wrong);
        EXPECT_EQ(CameraSetImageResolution(handle, &wrong), status);
    };
    using R = tSdkImageResolution;
    refused(CAMERA_STATUS_NOT_SUPPORTED, [](R& r) { r.iWidth = 10; });
    refused(CAMERA_STATUS_NOT_SUPPORTED, [](R& r) { r.iHeightZoomSw = 5; });
    refused(CAMERA_STATUS_PARAMETER_OUT_OF_BOUND, [](R& r) { r.iHOffsetFOV = 45; });
    refused(CAMERA_STATUS_PARAMETER_OUT_OF_BOUND, [](R& r) { r.iVOffsetFOV = -1; });
    refused(CAMERA_STATUS_PARAMETER_OUT_OF_BOUND, [](R& r) { r.iWidthFOV = r.iWidth = 0; });
    refused(CAMERA_STATUS_PARAMETER_INVALID, [](R& r) { r.iIndex = 1; });
    int x = 0, y = 0, width = 0, height = 0;
    ASSERT_EQ(MvSim_Resolution("R1", &x, &y, &width, &height), 0);
    EXPECT_EQ(std::vector<int>({x, y, width, height}), std::vector<int>({44, 5, 20, 10}));

    custom = tSdkImageResolution{};  // preset 0
    ASSERT_EQ(CameraSetImageResolution(handle, &custom), CAMERA_STATUS_SUCCESS);
    ASSERT_EQ(MvSim_Resolution("R1", &x, &y, &width, &height), 0);
    EXPECT_EQ(std::vector<int>({x, y, width, height}), std::vector<int>({0, 0, 64, 48}));
}

TEST_F(MvSimTest, AlignedBlocksAreAlignedAndCountedUntilFreedAndBadRequestsGetNull) {
    BYTE* block = CameraAlignMalloc(100, 64);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 64, 0u);
    std::memset(block, 0x11, 100);  // all of it is the caller's (the sanitizer checks)
    EXPECT_EQ(MvSim_AlignedBlocks(), 1u);
    const std::pair<int, int> refused[] = {{0, 16}, {-8, 16}, {16, 0}, {16, 24}};
    for (const auto& [size, align] : refused)
        EXPECT_EQ(CameraAlignMalloc(size, align), nullptr) << size << ", " << align;
    MvSim_FailCall("CameraAlignMalloc", CAMERA_STATUS_NO_MEMORY, 1);
    EXPECT_EQ(CameraAlignMalloc(16, 16), nullptr);
    BYTE local = 0;
    CameraAlignFree(nullptr);
    CameraAlignFree(&local);
    EXPECT_EQ(MvSim_AlignedBlocks(), 1u);
    CameraAlignFree(block);
    CameraAlignFree(block);  // twice: no longer known, left alone
    EXPECT_EQ(MvSim_AlignedBlocks(), 0u);

    // A reset stops counting a block but leaves it to its owner.
    block = CameraAlignMalloc(32, 16);
    MvSim_Reset();
    EXPECT_EQ(MvSim_AlignedBlocks(), 0u);
    ASSERT_EQ(CameraSdkInit(0), CAMERA_STATUS_SUCCESS);
    std::memset(block, 0x22, 32);
    CameraAlignFree(block);
}

}  // namespace
}  // namespace telvarra::test
