// The DaHeng simulator's library start, device list, sessions and feature nodes.
#include <cstdio>
#include <fstream>
#include <sstream>

#include "DahSimFixture.h"

namespace telvarra::test {
namespace {

constexpr std::size_t kRecord = sizeof(GX_DEVICE_BASE_INFO);

// A text field at its absolute offset in a record, bounded by the field size.
std::string textAt(const void* record, std::size_t offset, std::size_t size) {
    const char* field = static_cast<const char*>(record) + offset;
    const void* end = std::memchr(field, 0, size);
    return std::string(field, end ? static_cast<const char*>(end) - field : size);
}

std::int32_t int32At(const void* record, std::size_t offset) {
    std::int32_t value = 0;
    std::memcpy(&value, static_cast<const char*>(record) + offset, sizeof value);
    return value;
}

// ---- Library start. ----

TEST_F(DahSimTest, EveryCallButCloseAndLastErrorNeedsTheLibraryStarted) {
    addDevice("id=S1 size=8x8");
    void* handle = openDevice("S1");
    ASSERT_EQ(GXCloseLib(), GX_STATUS_SUCCESS);
    EXPECT_EQ(DahSim_IsOpen("S1"), 0);  // closing the library ended the session

    std::uint32_t count = 0;
    EXPECT_EQ(GXUpdateAllDeviceList(&count, 10), GX_STATUS_NOT_INIT_API);
    GX_INT_VALUE width{};
    EXPECT_EQ(GXGetIntValue(handle, "Width", &width), GX_STATUS_NOT_INIT_API);
    EXPECT_EQ(GXCloseDevice(handle), GX_STATUS_NOT_INIT_API);
    EXPECT_EQ(GXFlushQueue(), GX_STATUS_NOT_INIT_API);       // uncalled names too
    EXPECT_EQ(GXGetLastError(), GX_STATUS_NOT_IMPLEMENTED);  // allowed before the start
    EXPECT_EQ(GXCloseLib(), GX_STATUS_SUCCESS);              // without a start

    ASSERT_EQ(GXInitLib(), GX_STATUS_SUCCESS);
    EXPECT_EQ(GXInitLib(), GX_STATUS_SUCCESS);
    EXPECT_EQ(GXFlushQueue(), GX_STATUS_NOT_IMPLEMENTED);
    EXPECT_EQ(GXCloseDevice(handle), GX_STATUS_INVALID_HANDLE);  // gone with the old start
    EXPECT_EQ(DahSim_CallCount("GXFlushQueue"), 2u);
}

// ---- The device list. ----

TEST_F(DahSimTest, BaseInfoRecordsFollowTheLastRefreshWithTheirSizeInBytes) {
    addDevice("id=B1 user=Left model=MER-131-210U3M");
    addDevice("id=B2 layer=gige");
    addDevice("id=B3 user=Right layer=usb2 model=MER-030");
    DahSim_Unplug("B2");
    std::size_t bytes = 0;
    EXPECT_EQ(GXGetAllDeviceBaseInfo(nullptr, &bytes), GX_STATUS_SUCCESS);
    EXPECT_EQ(bytes, 0u);  // nothing refreshed yet

    std::uint32_t count = 0;
    EXPECT_EQ(GXUpdateAllDeviceList(nullptr, 10), GX_STATUS_INVALID_PARAMETER);
    ASSERT_EQ(GXUpdateAllDeviceList(&count, 10), GX_STATUS_SUCCESS);
    ASSERT_EQ(count, 2u);
    addDevice("id=B4");  // not listed until the next refresh

    EXPECT_EQ(GXGetAllDeviceBaseInfo(nullptr, nullptr), GX_STATUS_INVALID_PARAMETER);
    ASSERT_EQ(GXGetAllDeviceBaseInfo(nullptr, &bytes), GX_STATUS_SUCCESS);
    EXPECT_EQ(bytes, 2 * kRecord);

    std::vector<unsigned char> records(255 * kRecord, 0xEE);
    bytes = 2 * kRecord - 1;
    EXPECT_EQ(
        GXGetAllDeviceBaseInfo(reinterpret_cast<GX_DEVICE_BASE_INFO*>(records.data()), &bytes),
        GX_STATUS_NEED_MORE_BUFFER);
    EXPECT_EQ(records[0], 0xEE);
    bytes = records.size();
    ASSERT_EQ(
        GXGetAllDeviceBaseInfo(reinterpret_cast<GX_DEVICE_BASE_INFO*>(records.data()), &bytes),
        GX_STATUS_SUCCESS);
    EXPECT_EQ(bytes, 2 * kRecord);
    EXPECT_EQ(records[2 * kRecord], 0xEE);

    const unsigned char* first = records.data();
    const unsigned char* second = first + kRecord;
    EXPECT_EQ(textAt(first, 32, 32), "MER-131-210U3M");
    EXPECT_EQ(textAt(first, 64, 32), "B1");
    EXPECT_EQ(textAt(first, 96, 132), "MER-131-210U3M(B1)");
    EXPECT_EQ(textAt(first, 296, 68), "Left");
    EXPECT_EQ(int32At(first, 364), GX_ACCESS_STATUS_READWRITE);
    EXPECT_EQ(int32At(first, 368), GX_DEVICE_CLASS_U3V);
    EXPECT_EQ(textAt(second, 64, 32), "B3");
    EXPECT_EQ(textAt(second, 296, 68), "Right");
    EXPECT_EQ(int32At(second, 368), GX_DEVICE_CLASS_USB2);
}

// ---- Sessions. ----

TEST_F(DahSimTest, OpeningRefusesBadParametersAndUnknownDevices) {
    addDevice("id=R1");
    refresh();
    void* handle = nullptr;
    GX_OPEN_PARAM param{nullptr, GX_OPEN_SN, GX_ACCESS_EXCLUSIVE};
    EXPECT_EQ(GXOpenDevice(nullptr, &handle), GX_STATUS_INVALID_PARAMETER);
    EXPECT_EQ(GXOpenDevice(&param, &handle), GX_STATUS_INVALID_PARAMETER);
    EXPECT_EQ(open("", GX_OPEN_SN, &handle), GX_STATUS_INVALID_PARAMETER);
    EXPECT_EQ(open("R1", GX_OPEN_SN, nullptr), GX_STATUS_INVALID_PARAMETER);
    EXPECT_EQ(open("R1", GX_OPEN_SN, &handle, 1), GX_STATUS_INVALID_PARAMETER);
    EXPECT_EQ(open("R1", GX_OPEN_SN, &handle, 5), GX_STATUS_INVALID_PARAMETER);
    EXPECT_EQ(open("R1", 5, &handle), GX_STATUS_INVALID_PARAMETER);
    EXPECT_EQ(open("one", GX_OPEN_INDEX, &handle), GX_STATUS_INVALID_PARAMETER);
    EXPECT_EQ(open("0", GX_OPEN_INDEX, &handle), GX_STATUS_NOT_FOUND_DEVICE);
    EXPECT_EQ(open("2", GX_OPEN_INDEX, &handle), GX_STATUS_NOT_FOUND_DEVICE);
    EXPECT_EQ(open("R2", GX_OPEN_SN, &handle), GX_STATUS_NOT_FOUND_DEVICE);
    EXPECT_EQ(open("192.168.1.2", GX_OPEN_IP, &handle), GX_STATUS_NOT_FOUND_DEVICE);
    DahSim_Unplug("R1");  // listed, but gone since
    EXPECT_EQ(open("R1", GX_OPEN_SN, &handle), GX_STATUS_NOT_FOUND_DEVICE);
    EXPECT_EQ(handle, nullptr);
}

// ---- Feature nodes. ----

TEST_F(DahSimTest, EnumValueWritesTheWholeRecordSoAPlainIntegerWouldOverrun) {
    addDevice("id=E1 format=bayer_rg8");
    void* handle = openDevice("E1");
    // Filled with a pattern, the record shows which bytes the call wrote: all of them, up to the
    // reserved words at its end, far beyond the 8 bytes of a plain integer.
    std::vector<unsigned char> record(sizeof(GX_ENUM_VALUE), 0xAB);
    auto* value = reinterpret_cast<GX_ENUM_VALUE*>(record.data());
    ASSERT_EQ(GXGetEnumValue(handle, "PixelFormat", value), GX_STATUS_SUCCESS);
    EXPECT_EQ(record.back(), 0);
    EXPECT_EQ(record[offsetof(GX_ENUM_VALUE, reserved)], 0);
    EXPECT_EQ(value->stCurValue.nCurValue, GX_PIXEL_FORMAT_BAYER_RG8);
    EXPECT_STREQ(value->stCurValue.szSymbolic, "BayerRG8");
    ASSERT_EQ(value->nSupportedNum, 4u);
    EXPECT_EQ(value->nArrySupportedValue[1].nCurValue, GX_PIXEL_FORMAT_MONO8);
    EXPECT_STREQ(value->nArrySupportedValue[3].szSymbolic, "BGR8");

    GX_ENUM_VALUE acquisition{};
    ASSERT_EQ(GXGetEnumValue(handle, "AcquisitionMode", &acquisition), GX_STATUS_SUCCESS);
    EXPECT_EQ(acquisition.stCurValue.nCurValue, GX_ACQ_MODE_CONTINUOUS);
    EXPECT_EQ(acquisition.nSupportedNum, 3u);
    EXPECT_EQ(GXGetEnumValue(handle, "Gain", &acquisition), GX_STATUS_ERROR_TYPE);
}

TEST_F(DahSimTest, FeatureSaveNeedsAPathAndWritesTheCurrentValues) {
    addDevice("id=V1 model=MER-SAVE size=16x8");
    void* handle = openDevice("V1");
    ASSERT_EQ(GXSetFloatValue(handle, "Gain", 6.5), GX_STATUS_SUCCESS);
    EXPECT_EQ(GXFeatureSave(handle, nullptr), GX_STATUS_INVALID_PARAMETER);
    const std::string path = ::testing::TempDir() + "dahsim_features.txt";
    ASSERT_EQ(GXFeatureSave(handle, path.c_str()), GX_STATUS_SUCCESS);
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    std::remove(path.c_str());
    EXPECT_NE(text.str().find("Gain=6.5\n"), std::string::npos) << text.str();
    EXPECT_NE(text.str().find("Width=16\n"), std::string::npos);
    EXPECT_NE(text.str().find("PixelFormat=Mono8\n"), std::string::npos);
}

}  // namespace
}  // namespace telvarra::test
