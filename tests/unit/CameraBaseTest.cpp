#include <gtest/gtest.h>

#include <cstring>

#include "api/CameraBase.h"
#include "api/Records.h"

namespace {

// The smallest make: only what the base leaves abstract, each doing nothing.
class MinimalCamera : public telvarra::CameraBase {
public:
    MinimalCamera()
        : CameraBase("cam-7", telvarra::makeDeviceRecord(RUVO_CAMERA_DVP,
                                                          {"cam-7", "Dvp", "S", "M", "D", "U"})) {
        m_deviceInfo.supportedFormats.count = 2;
        m_deviceInfo.supportedFormats.formats[0] = RUVO_FORMAT_MONO8;
        m_deviceInfo.supportedFormats.formats[1] = RUVO_FORMAT_BGR8;
        m_width = 2448;
        m_height = 2048;
    }
    bool initialize() override { return true; }
    bool connect() override {
        m_connected = true;
        m_status = RUVO_STATUS_CONNECTED;
        return true;
    }
    bool disconnect() override { return true; }
    bool startAcquisition() override { return true; }
    bool stopAcquisition() override { return true; }
    bool setParameter(const char*, const char*) override { return true; }
    bool getParameter(const char*, char**) override { return true; }
    bool reconnect() override { return true; }
    void setReconnectInterval(int32_t) override {}
    bool getCurrentFrame(ImageData&, int32_t) override { return false; }
    bool getCurrentFrameToBuffer(unsigned char*, int32_t, ImageData&, int32_t) override {
        return false;
    }
    bool registerFrameCallback(FrameCallback, void*) override { return true; }
    bool unregisterFrameCallback() override { return true; }
    bool setImageFormat(Ruvo_ImageFormat) override { return true; }
    bool setImageSize(int32_t, int32_t) override { return true; }
    bool setHorMirror(bool) override { return true; }
    bool getHorMirror(bool&) override { return true; }
    bool setVerMirror(bool) override { return true; }
    bool getVerMirror(bool&) override { return true; }
    bool setRotate(int32_t) override { return true; }
    bool getRotate(int32_t&) override { return true; }
    bool setExposureMod(bool) override { return true; }
    bool getExposureMod(bool&) override { return true; }
    bool setBrightnessByPercent(int32_t) override { return true; }
    bool getBrightnessByPercent(int32_t&) override { return true; }
    bool setGainByPercent(int32_t) override { return true; }
    bool getGainByPercent(int32_t&) override { return true; }
    bool setExposureByPercent(int32_t) override { return true; }
    bool getExposureByPercent(int32_t&) override { return true; }
};

TEST(CameraBaseTest, NewCameraIsDisconnectedMonoWithTheCameraMaximumSize) {
    MinimalCamera camera;
    EXPECT_FALSE(camera.isConnected());
    EXPECT_EQ(camera.getStatus(), RUVO_STATUS_DISCONNECTED);
    EXPECT_EQ(camera.getImageFormat(), RUVO_FORMAT_MONO8);

    DeviceInfo info;
    std::memset(&info, 0xAB, sizeof info);
    DeviceInfo& returned = camera.getDeviceInfo(info);
    EXPECT_EQ(&returned, &info);
    EXPECT_STREQ(info.cameraId, "cam-7");
    EXPECT_EQ(info.maxWidth, 1280);
    EXPECT_EQ(info.maxHeight, 1024);
    EXPECT_TRUE(info.isAvailable);
}

TEST(CameraBaseTest, SharedAccessorsReadTheSharedFields) {
    MinimalCamera camera;
    camera.connect();
    EXPECT_TRUE(camera.isConnected());
    EXPECT_EQ(camera.getStatus(), RUVO_STATUS_CONNECTED);

    const _RUVO_IMAGE_FORMAT_LIST formats = camera.getSupportedImageFormats();
    EXPECT_EQ(formats.count, 2u);
    EXPECT_EQ(formats.formats[1], RUVO_FORMAT_BGR8);
    EXPECT_EQ(formats.formats[2], RUVO_FORMAT_UNKNOWN);

    int32_t width = 0, height = 0;
    EXPECT_TRUE(camera.getImageSize(width, height));
    EXPECT_EQ(width, 2448);
    EXPECT_EQ(height, 2048);
}

TEST(CameraBaseTest, TypedValuesSucceedWithoutTouchingTheCallersRecords) {
    MinimalCamera camera;
    _RUVO_INT_VALUE integer{11, 12, 13, 14};
    _RUVO_ENUM_VALUE enumeration{};
    enumeration.count = 99;
    _RUVO_FLOAT_VALUE real{1.5, 2.5, 3.5};
    bool flag = true;
    _RUVO_STRING_VALUE text{"kept", 4};

    EXPECT_TRUE(camera.getIntValue("Width", &integer));
    EXPECT_TRUE(camera.getEnumValue("ISO", &enumeration));
    EXPECT_TRUE(camera.getFloatValue("Gain", &real));
    EXPECT_TRUE(camera.getBoolValue("Auto", &flag));
    EXPECT_TRUE(camera.getStringValue("Name", &text));
    EXPECT_TRUE(camera.setIntValue("Width", 1) && camera.setEnumValue("ISO", 2) &&
                camera.setFloatValue("Gain", 3.0) && camera.setBoolValue("Auto", false) &&
                camera.setStringValue("Name", "x"));

    EXPECT_EQ(integer.current, 11);
    EXPECT_EQ(integer.increment, 14);
    EXPECT_EQ(enumeration.count, 99u);
    EXPECT_EQ(real.maximum, 3.5);
    EXPECT_TRUE(flag);
    EXPECT_STREQ(text.current, "kept");
}

}  // namespace
