// The MindVision simulator's frames: cut to the field of view with the mosaic that offset gives,
// processed by the software ISP (conversion, mirrors, counter-clockwise turns) and lent until
// given back. Waiting, time-outs and faults are driven through the camera by the shared suite.
#include "MvSimFixture.h"
#include "sim/common/ImageOps.h"
#include "sim/common/PixelFormat.h"
#include "sim/common/TestPattern.h"

namespace telvarra::test {
namespace {

using Bytes = std::vector<std::uint8_t>;
using sim::PixelFormat;

struct Grab {
    tSdkFrameHead head{};
    BYTE* raw = nullptr;
    Bytes bytes() const { return Bytes(raw, raw + head.uBytes); }
};

Grab grab(CameraHandle handle) {
    Grab frame;
    EXPECT_EQ(CameraGetImageBufferPriority(handle, &frame.head, &frame.raw, 1000,
                                           CAMERA_GET_IMAGE_PRIORITY_NEWEST),
              CAMERA_STATUS_SUCCESS);
    return frame;
}

void setFieldOfView(CameraHandle handle, int left, int top, int width, int height) {
    tSdkImageResolution custom{};
    custom.iIndex = IMAGEOUT_MODE_CUSTOM;
    custom.iHOffsetFOV = left;
    custom.iVOffsetFOV = top;
    custom.iWidthFOV = custom.iWidth = width;
    custom.iHeightFOV = custom.iHeight = height;
    ASSERT_EQ(CameraSetImageResolution(handle, &custom), CAMERA_STATUS_SUCCESS);
}

// Frame `number` of a one-sample-per-pixel sensor, rendered whole and cut here.
Bytes sensorRegion(PixelFormat format, const char* id, std::uint32_t number,
                   std::uint32_t sensorWidth, std::uint32_t sensorHeight, std::uint32_t left,
                   std::uint32_t top, std::uint32_t width, std::uint32_t height) {
    unsigned int seed = 0;
    EXPECT_EQ(MvSim_DeviceSeed(id, &seed), 0);
    Bytes full(sim::frameBytes(format, sensorWidth, sensorHeight));
    sim::renderFrame({id, "mindvision", seed, sensorWidth, sensorHeight}, format, number,
                     sensorWidth, sensorHeight, full.data());
    Bytes region;
    for (std::uint32_t y = top; y < top + height; ++y)
        for (std::uint32_t x = left; x < left + width; ++x)
            region.push_back(full[y * sensorWidth + x]);
    return region;
}

TEST_F(MvSimTest, ARawFrameIsTheFieldOfViewWithTheMosaicSeenFromItsOffset) {
    addDevice("id=B1 size=16x12 format=bayer_bg8");
    const CameraHandle handle = startPlaying("B1");
    ASSERT_EQ(CameraSetAnalogGain(handle, 20), CAMERA_STATUS_SUCCESS);
    ASSERT_EQ(CameraSetExposureTime(handle, 5000.0), CAMERA_STATUS_SUCCESS);
    struct Offset {
        int left, top;
        UINT mosaic;
    };
    const Offset offsets[] = {{0, 0, CAMERA_MEDIA_TYPE_BAYBG8},
                              {1, 0, CAMERA_MEDIA_TYPE_BAYGB8},
                              {0, 1, CAMERA_MEDIA_TYPE_BAYGR8},
                              {11, 7, CAMERA_MEDIA_TYPE_BAYRG8}};
    std::uint32_t number = 0;
    Grab frame;
    for (const Offset& offset : offsets) {
        setFieldOfView(handle, offset.left, offset.top, 5, 4);
        frame = grab(handle);
        ++number;
        EXPECT_EQ(frame.head.uiMediaType, offset.mosaic) << offset.left << ", " << offset.top;
        ASSERT_EQ(frame.head.uBytes, 20u);
        EXPECT_EQ(frame.head.iWidth, 5);
        EXPECT_EQ(frame.head.iHeight, 4);
        EXPECT_EQ(frame.bytes(), sensorRegion(PixelFormat::BayerBG8, "B1", number, 16, 12,
                                              offset.left, offset.top, 5, 4));
        ASSERT_EQ(CameraReleaseImageBuffer(handle, frame.raw), CAMERA_STATUS_SUCCESS);
    }
    EXPECT_EQ(frame.head.uiExpTime, 5000u);
    EXPECT_EQ(frame.head.fAnalogGain, 2.5f);  // 20 steps of 0.125
    EXPECT_EQ(frame.head.iSaturation, 100);
}

TEST_F(MvSimTest, ImageProcessConvertsTheRawFrameToTheIspFormat) {
    addDevice("id=P1 size=6x4 format=bayer_rg8");
    addDevice("id=P2 size=5x3 format=mono8");
    addDevice("id=P3 size=4x2 format=bgr8");
    // A Bayer crop at an odd offset: its own mosaic (GR) demosaiced, in BGR order by default.
    const CameraHandle bayer = startPlaying("P1");
    setFieldOfView(bayer, 1, 0, 4, 4);
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
    EXPECT_EQ(frame.head.iWidth, 4);

    // A mono sensor: 24-bit grey by default.
    const CameraHandle mono = startPlaying("P2");
    UINT format = 0;
    ASSERT_EQ(CameraGetIspOutFormat(mono, &format), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(format, CAMERA_MEDIA_TYPE_BGR8);
    frame = grab(mono);
    EXPECT_EQ(frame.head.iSaturation, 0);
    const Bytes grey = frame.bytes();
    ASSERT_EQ(CameraImageProcess(mono, frame.raw, out.data(), &frame.head), CAMERA_STATUS_SUCCESS);
    for (std::size_t p = 0; p < grey.size(); ++p)
        EXPECT_EQ(Bytes(out.begin() + p * 3, out.begin() + p * 3 + 3), Bytes(3, grey[p]));

    // A colour sensor to grey.
    const CameraHandle colour = startPlaying("P3");
    EXPECT_EQ(CameraSetIspOutFormat(colour, CAMERA_MEDIA_TYPE_RGBA8), CAMERA_STATUS_NOT_SUPPORTED);
    ASSERT_EQ(CameraSetIspOutFormat(colour, CAMERA_MEDIA_TYPE_MONO8), CAMERA_STATUS_SUCCESS);
    frame = grab(colour);
    EXPECT_EQ(frame.head.uiMediaType, CAMERA_MEDIA_TYPE_BGR8);
    const Bytes bgr = frame.bytes();
    tSdkFrameHead head = frame.head;
    ASSERT_EQ(CameraImageProcess(colour, frame.raw, out.data(), &head), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(head.uiMediaType, CAMERA_MEDIA_TYPE_MONO8);
    EXPECT_EQ(head.uBytes, 8u);
    for (std::size_t p = 0; p < 8; ++p)
        EXPECT_EQ(out[p],
                  (77 * bgr[p * 3 + 2] + 150 * bgr[p * 3 + 1] + 29 * bgr[p * 3] + 128) >> 8);
}

TEST_F(MvSimTest, ProcessingMirrorsFirstThenTurnsCounterClockwise) {
    constexpr std::uint32_t w = 5, h = 3;
    addDevice("id=M1 size=5x3");
    const CameraHandle handle = startPlaying("M1");
    ASSERT_EQ(CameraSetIspOutFormat(handle, CAMERA_MEDIA_TYPE_MONO8), CAMERA_STATUS_SUCCESS);
    Bytes raw, out(w * h);
    tSdkFrameHead head{};
    const auto process = [&] {
        Grab frame = grab(handle);
        raw = frame.bytes();
        head = frame.head;
        ASSERT_EQ(CameraImageProcess(handle, frame.raw, out.data(), &head), CAMERA_STATUS_SUCCESS);
        ASSERT_EQ(CameraReleaseImageBuffer(handle, frame.raw), CAMERA_STATUS_SUCCESS);
    };
    const auto rawAt = [&](std::uint32_t x, std::uint32_t y) { return raw[y * w + x]; };

    // One quarter turn counter-clockwise: the right column becomes the top row.
    ASSERT_EQ(CameraSetRotate(handle, 1), CAMERA_STATUS_SUCCESS);
    process();
    EXPECT_EQ(head.iWidth, 3);
    EXPECT_EQ(head.iHeight, 5);
    for (std::uint32_t y = 0; y < h; ++y)
        for (std::uint32_t x = 0; x < w; ++x) ASSERT_EQ(out[(w - 1 - x) * h + y], rawAt(x, y));

    ASSERT_EQ(CameraSetRotate(handle, 0), CAMERA_STATUS_SUCCESS);
    ASSERT_EQ(CameraSetMirror(handle, MIRROR_DIRECTION_HORIZONTAL, 1), CAMERA_STATUS_SUCCESS);
    process();
    EXPECT_EQ(head.iWidth, 5);
    for (std::uint32_t y = 0; y < h; ++y)
        for (std::uint32_t x = 0; x < w; ++x) ASSERT_EQ(out[y * w + w - 1 - x], rawAt(x, y));

    // Both mirrors, then three quarter turns counter-clockwise, which is one clockwise.
    ASSERT_EQ(CameraSetMirror(handle, MIRROR_DIRECTION_VERTICAL, 1), CAMERA_STATUS_SUCCESS);
    ASSERT_EQ(CameraSetRotate(handle, 3), CAMERA_STATUS_SUCCESS);
    process();
    EXPECT_EQ(head.iWidth, 3);
    for (std::uint32_t y = 0; y < h; ++y)
        for (std::uint32_t x = 0; x < w; ++x)
            ASSERT_EQ(out[x * h + h - 1 - y], rawAt(w - 1 - x, h - 1 - y));
    EXPECT_EQ(CameraSetRotate(handle, 4), CAMERA_STATUS_PARAMETER_INVALID);
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
    EXPECT_EQ(CameraReleaseImageBuffer(-1, b.raw), CAMERA_STATUS_PARAMETER_INVALID);

    // The borrower gives its frames back after UnInit and after an unplug too.
    ASSERT_EQ(CameraUnInit(first), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(MvSim_OutstandingBuffers(), 2u);
    EXPECT_EQ(CameraReleaseImageBuffer(first, b.raw), CAMERA_STATUS_SUCCESS);
    ASSERT_EQ(MvSim_Unplug("L2"), 0);
    head = c.head;
    EXPECT_EQ(CameraImageProcess(second, c.raw, out.data(), &head), CAMERA_STATUS_DEVICE_LOST);
    EXPECT_EQ(CameraReleaseImageBuffer(second, c.raw), CAMERA_STATUS_SUCCESS);
    EXPECT_EQ(MvSim_OutstandingBuffers(), 0u);
}

}  // namespace
}  // namespace telvarra::test
