// The HikVision simulator's frames: lending and giving back, frame information, pixel data
// against the test pattern, conversion to RGB8 against the demosaic, and the SDK's own mirror
// and rotation, through the bound function table.
#include <chrono>
#include <ctime>

#include "HikSimFixture.h"
#include "api/FrameRoutines.h"
#include "sim/common/ImageOps.h"
#include "sim/common/TestPattern.h"

namespace telvarra::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

// The raw bytes of frame `frame`, from the pattern alone. `tile` names a Bayer mosaic by its
// 2 x 2 colours ("RGGB"); "mono" and "rgb" are the packed formats.
Bytes expectedRaw(const std::string& tile, std::uint32_t seed, std::uint32_t frame,
                  std::uint32_t width, std::uint32_t height) {
    Bytes bytes;
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            if (tile == "mono") {
                bytes.push_back(sim::patternSample(seed, frame, x, y, sim::kRed));
            } else if (tile == "rgb") {
                for (std::uint32_t c = 0; c < 3; ++c)
                    bytes.push_back(sim::patternSample(seed, frame, x, y, c));
            } else {
                const char colour = tile[(y % 2) * 2 + x % 2];
                const std::uint32_t channel = colour == 'R' ? 0 : colour == 'G' ? 1 : 2;
                bytes.push_back(sim::patternSample(seed, frame, x, y, channel));
            }
        }
    }
    return bytes;
}

std::uint32_t seedOf(const char* id) {
    unsigned int seed = 0;
    EXPECT_EQ(HikSim_DeviceSeed(id, &seed), 0);
    return seed;
}

Bytes frameBytes(const MV_FRAME_OUT& frame) {
    return Bytes(frame.pBufAddr, frame.pBufAddr + frame.stFrameInfo.nFrameLen);
}

// ---- Streaming and lending. ----

using HikSimFrameTest = HikSimTest;

TEST_F(HikSimFrameTest, NoFrameIsNoDataAtOnceInsteadOfWaitingForTheTimeOut) {
    addDevice("id=T1 size=4x4");
    void* handle = openDevice("T1");
    MV_FRAME_OUT frame{};
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(sdk().MV_CC_GetImageBuffer(handle, &frame, 2000), MV_E_NODATA);  // not streaming
    ASSERT_EQ(sdk().MV_CC_StartGrabbing(handle), MV_OK);
    EXPECT_EQ(sdk().MV_CC_StartGrabbing(handle), MV_E_CALLORDER);
    ASSERT_EQ(sdk().MV_CC_SetEnumValue(handle, "TriggerMode", MV_TRIGGER_MODE_ON), MV_OK);
    EXPECT_EQ(sdk().MV_CC_GetImageBuffer(handle, &frame, 2000), MV_E_NODATA);  // no trigger
    ASSERT_EQ(sdk().MV_CC_SetEnumValue(handle, "TriggerMode", MV_TRIGGER_MODE_OFF), MV_OK);
    HikSim_FailCall("MV_CC_GetImageBuffer", MV_E_NODATA, 1);
    EXPECT_EQ(sdk().MV_CC_GetImageBuffer(handle, &frame, 2000), MV_E_NODATA);  // planned
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1500));
    EXPECT_EQ(frame.pBufAddr, nullptr);
    EXPECT_EQ(HikSim_OutstandingBuffers(), 0u);

    ASSERT_EQ(sdk().MV_CC_GetImageBuffer(handle, &frame, 2000), MV_OK);
    EXPECT_EQ(sdk().MV_CC_FreeImageBuffer(handle, &frame), MV_OK);
    ASSERT_EQ(sdk().MV_CC_StopGrabbing(handle), MV_OK);
    EXPECT_EQ(sdk().MV_CC_StopGrabbing(handle), MV_E_CALLORDER);
    EXPECT_EQ(sdk().MV_CC_GetImageBuffer(handle, &frame, 2000), MV_E_NODATA);
    EXPECT_EQ(sdk().MV_CC_GetImageBuffer(handle, nullptr, 2000), MV_E_PARAMETER);
    char arguments[16] = {};
    HikSim_LastArguments("MV_CC_GetImageBuffer", arguments, sizeof arguments);
    EXPECT_STREQ(arguments, "2000");
}

TEST_F(HikSimFrameTest, FramesCarryTheirInformationAndThePatternOfTheirNumber) {
    addDevice("id=T2 size=7x5 format=mono8");
    void* handle = startStreaming("T2");
    ASSERT_EQ(sdk().MV_CC_SetGain(handle, 3.5f), MV_OK);
    const std::int64_t before = static_cast<std::int64_t>(std::time(nullptr)) * 1000;
    std::uint64_t previousTicks = 0;
    for (std::uint32_t n = 1; n <= 3; ++n) {
        MV_FRAME_OUT frame{};
        ASSERT_EQ(sdk().MV_CC_GetImageBuffer(handle, &frame, 2000), MV_OK);
        const MV_FRAME_OUT_INFO_EX& info = frame.stFrameInfo;
        EXPECT_EQ(info.nWidth, 7);
        EXPECT_EQ(info.nHeight, 5);
        EXPECT_EQ(info.nExtendWidth, 7u);
        EXPECT_EQ(static_cast<std::int64_t>(info.enPixelType), PixelType_Gvsp_Mono8);
        EXPECT_EQ(info.nFrameNum, n);
        EXPECT_EQ(info.nFrameLen, 35u);
        EXPECT_EQ(info.fGain, 3.5f);
        EXPECT_EQ(info.fExposureTime, 10000.0f);
        const std::uint64_t ticks =
            (std::uint64_t{info.nDevTimeStampHigh} << 32) | info.nDevTimeStampLow;
        EXPECT_EQ(ticks - previousTicks, 40000000u);  // 40 ms in nanoseconds
        previousTicks = ticks;
        EXPECT_GE(info.nHostTimeStamp, before - 1000);
        EXPECT_LE(info.nHostTimeStamp, before + 60000);
        EXPECT_EQ(frameBytes(frame), expectedRaw("mono", sim::seedFromId("T2"), n, 7, 5));
        ASSERT_EQ(sdk().MV_CC_FreeImageBuffer(handle, &frame), MV_OK);
    }
    unsigned int delivered = 0;
    ASSERT_EQ(HikSim_FramesDelivered("T2", &delivered), 0);
    EXPECT_EQ(delivered, 3u);
}

TEST_F(HikSimFrameTest, BayerFramesSampleTheColourPatternAtEachSite) {
    addDevice("id=T3 size=6x4 format=bayer_gr8 seed=77");
    void* handle = startStreaming("T3");
    MV_FRAME_OUT frame{};
    ASSERT_EQ(sdk().MV_CC_GetImageBuffer(handle, &frame, 2000), MV_OK);
    EXPECT_EQ(static_cast<std::int64_t>(frame.stFrameInfo.enPixelType), PixelType_Gvsp_BayerGR8);
    EXPECT_EQ(frameBytes(frame), expectedRaw("GRBG", 77, 1, 6, 4));
    EXPECT_EQ(sdk().MV_CC_FreeImageBuffer(handle, &frame), MV_OK);
}

TEST_F(HikSimFrameTest, AtMostTheNodeCountIsLentAndUnreturnedBuffersStayCounted) {
    addDevice("id=T4 size=4x2");
    addDevice("id=T5 size=4x2");
    void* handle = startStreaming("T4");
    void* other = startStreaming("T5");
    std::vector<MV_FRAME_OUT> frames(HIKSIM_IMAGE_NODE_COUNT);
    for (MV_FRAME_OUT& frame : frames)
        ASSERT_EQ(sdk().MV_CC_GetImageBuffer(handle, &frame, 2000), MV_OK);
    EXPECT_EQ(HikSim_OutstandingBuffers(), HIKSIM_IMAGE_NODE_COUNT);
    MV_FRAME_OUT extra{};
    EXPECT_EQ(sdk().MV_CC_GetImageBuffer(handle, &extra, 2000), MV_E_NODATA);
    // Another handle has nodes of its own; a buffer goes back only to its borrower.
    ASSERT_EQ(sdk().MV_CC_GetImageBuffer(other, &extra, 2000), MV_OK);
    EXPECT_EQ(sdk().MV_CC_FreeImageBuffer(other, &frames[0]), MV_E_PARAMETER);
    EXPECT_EQ(sdk().MV_CC_FreeImageBuffer(other, &extra), MV_OK);

    EXPECT_EQ(sdk().MV_CC_FreeImageBuffer(handle, &frames[0]), MV_OK);
    EXPECT_EQ(sdk().MV_CC_FreeImageBuffer(handle, &frames[0]), MV_E_PARAMETER);  // twice
    MV_FRAME_OUT empty{};
    EXPECT_EQ(sdk().MV_CC_FreeImageBuffer(handle, &empty), MV_E_PARAMETER);
    ASSERT_EQ(sdk().MV_CC_GetImageBuffer(handle, &frames[0], 2000), MV_OK);
    EXPECT_EQ(frames[0].stFrameInfo.nFrameNum, HIKSIM_IMAGE_NODE_COUNT + 1);

    // Giving back is still possible after closing; after destroying, the rest is a leak.
    ASSERT_EQ(sdk().MV_CC_CloseDevice(handle), MV_OK);
    EXPECT_EQ(sdk().MV_CC_FreeImageBuffer(handle, &frames[1]), MV_OK);
    ASSERT_EQ(sdk().MV_CC_DestroyHandle(handle), MV_OK);
    EXPECT_EQ(sdk().MV_CC_FreeImageBuffer(handle, &frames[2]), MV_E_HANDLE);
    EXPECT_EQ(HikSim_OutstandingBuffers(), HIKSIM_IMAGE_NODE_COUNT - 1);
    HikSim_Reset();
    EXPECT_EQ(HikSim_OutstandingBuffers(), 0u);
}

// ---- Conversion to RGB8. ----

struct MosaicCase {
    const char* format;
    const char* tile;
    std::uint32_t pixelType;
};

class HikSimDemosaicTest : public HikSimTest, public ::testing::WithParamInterface<MosaicCase> {};

TEST_P(HikSimDemosaicTest, ConvertsTheFrameByTheBilinearDemosaic) {
    const MosaicCase& mosaic = GetParam();
    addDevice(std::string("id=D1 size=9x7 format=") + mosaic.format);
    void* handle = startStreaming("D1");
    MV_FRAME_OUT frame{};
    ASSERT_EQ(sdk().MV_CC_GetImageBuffer(handle, &frame, 2000), MV_OK);

    Bytes rgb(9 * 7 * 3 + 5, 0xEE);
    MV_CC_PIXEL_CONVERT_PARAM_EX param{};
    param.nWidth = 9;
    param.nHeight = 7;
    param.enSrcPixelType = frame.stFrameInfo.enPixelType;
    param.pSrcData = frame.pBufAddr;
    param.nSrcDataLen = frame.stFrameInfo.nFrameLen;
    param.enDstPixelType = PixelType_Gvsp_RGB8_Packed;
    param.pDstBuffer = rgb.data();
    param.nDstBufferSize = static_cast<std::uint32_t>(rgb.size());
    ASSERT_EQ(sdk().MV_CC_ConvertPixelTypeEx(handle, &param), MV_OK);
    EXPECT_EQ(param.nDstLen, 9u * 7 * 3);

    const Bytes raw = expectedRaw(mosaic.tile, seedOf("D1"), 1, 9, 7);
    Bytes expected(9 * 7 * 3);
    const auto format = *sim::formatFromName(mosaic.format);
    sim::demosaicBilinear(format, raw.data(), 9, 7, expected.data());
    EXPECT_EQ(Bytes(rgb.begin(), rgb.begin() + 9 * 7 * 3), expected);
    EXPECT_EQ(rgb.back(), 0xEE);  // nothing written past the image
    EXPECT_EQ(static_cast<std::int64_t>(param.enSrcPixelType), mosaic.pixelType);
    EXPECT_EQ(sdk().MV_CC_FreeImageBuffer(handle, &frame), MV_OK);
}

INSTANTIATE_TEST_SUITE_P(EveryMosaic, HikSimDemosaicTest,
                         ::testing::Values(MosaicCase{"bayer_gr8", "GRBG", PixelType_Gvsp_BayerGR8},
                                           MosaicCase{"bayer_rg8", "RGGB", PixelType_Gvsp_BayerRG8},
                                           MosaicCase{"bayer_gb8", "GBRG", PixelType_Gvsp_BayerGB8},
                                           MosaicCase{"bayer_bg8", "BGGR",
                                                      PixelType_Gvsp_BayerBG8}),
                         [](const auto& info) { return std::string(info.param.tile); });

using HikSimConvertTest = HikSimTest;

MV_CC_PIXEL_CONVERT_PARAM_EX convertParam(Bytes& in, std::uint32_t type, std::uint32_t width,
                                          std::uint32_t height, Bytes& out) {
    MV_CC_PIXEL_CONVERT_PARAM_EX param{};
    param.nWidth = width;
    param.nHeight = height;
    param.enSrcPixelType = type;
    param.pSrcData = in.data();
    param.nSrcDataLen = static_cast<std::uint32_t>(in.size());
    param.enDstPixelType = PixelType_Gvsp_RGB8_Packed;
    param.pDstBuffer = out.data();
    param.nDstBufferSize = static_cast<std::uint32_t>(out.size());
    return param;
}

TEST_F(HikSimConvertTest, ConvertsPackedFormatsAndRefusesWhatItCannot) {
    addDevice("id=V1");
    void* handle = createHandle("V1");  // conversion needs a handle, not an open device
    Bytes mono = {10, 20}, bgr = {1, 2, 3, 4, 5, 6}, out(6);
    auto param = convertParam(mono, PixelType_Gvsp_Mono8, 2, 1, out);
    ASSERT_EQ(sdk().MV_CC_ConvertPixelTypeEx(handle, &param), MV_OK);
    EXPECT_EQ(out, (Bytes{10, 10, 10, 20, 20, 20}));
    param = convertParam(bgr, PixelType_Gvsp_BGR8_Packed, 2, 1, out);
    ASSERT_EQ(sdk().MV_CC_ConvertPixelTypeEx(handle, &param), MV_OK);
    EXPECT_EQ(out, (Bytes{3, 2, 1, 6, 5, 4}));
    param = convertParam(bgr, PixelType_Gvsp_RGB8_Packed, 2, 1, out);
    ASSERT_EQ(sdk().MV_CC_ConvertPixelTypeEx(handle, &param), MV_OK);
    EXPECT_EQ(out, bgr);
    EXPECT_EQ(param.nDstLen, 6u);

    Bytes in(12, 1), small(11, 0xEE);
    param = convertParam(in, PixelType_Gvsp_BayerRG8, 4, 3, small);
    param.nDstLen = 77;
    EXPECT_EQ(sdk().MV_CC_ConvertPixelTypeEx(handle, &param), MV_E_NOENOUGH_BUF);
    EXPECT_EQ(param.nDstLen, 77u);
    EXPECT_EQ(small, Bytes(11, 0xEE));
    Bytes enough(36);
    param = convertParam(in, PixelType_Gvsp_BayerRG8, 4, 3, enough);
    param.nSrcDataLen = 11;
    EXPECT_EQ(sdk().MV_CC_ConvertPixelTypeEx(handle, &param), MV_E_PARAMETER);
    param = convertParam(in, PixelType_Gvsp_Jpeg, 4, 3, enough);
    EXPECT_EQ(sdk().MV_CC_ConvertPixelTypeEx(handle, &param), MV_E_SUPPORT);
    param = convertParam(in, PixelType_Gvsp_BayerRG8, 4, 3, enough);
    param.enDstPixelType = PixelType_Gvsp_BGR8_Packed;
    EXPECT_EQ(sdk().MV_CC_ConvertPixelTypeEx(handle, &param), MV_E_SUPPORT);
    EXPECT_EQ(sdk().MV_CC_ConvertPixelTypeEx(nullptr, &param), MV_E_HANDLE);
}

// ---- The SDK's mirror and rotation, on a 3 x 2 RGB image "a b c / d e f". ----

using HikSimTransformTest = HikSimTest;

Bytes rgbPixels(const std::string& names) {
    Bytes bytes;
    for (const char name : names)
        for (int c = 0; c < 3; ++c) bytes.push_back(static_cast<std::uint8_t>(name * 4 + c));
    return bytes;
}

TEST_F(HikSimTransformTest, FlipsAndTurnsClockwiseIntoTheCallersBuffer) {
    addDevice("id=W1");
    void* handle = createHandle("W1");
    Bytes image = rgbPixels("abcdef"), out(18);

    MV_CC_FLIP_IMAGE_PARAM flip{};
    flip.enPixelType = PixelType_Gvsp_RGB8_Packed;
    flip.nWidth = 3;
    flip.nHeight = 2;
    flip.pSrcData = image.data();
    flip.nSrcDataLen = 18;
    flip.pDstBuf = out.data();
    flip.nDstBufSize = 18;
    flip.enFlipType = MV_FLIP_HORIZONTAL;
    ASSERT_EQ(sdk().MV_CC_FlipImage(handle, &flip), MV_OK);
    EXPECT_EQ(out, rgbPixels("cbafed"));
    EXPECT_EQ(flip.nDstBufLen, 18u);

    MV_CC_ROTATE_IMAGE_PARAM rotate{};
    rotate.enPixelType = PixelType_Gvsp_BGR8_Packed;
    rotate.nWidth = 3;
    rotate.nHeight = 2;
    rotate.pSrcData = image.data();
    rotate.nSrcDataLen = 18;
    rotate.pDstBuf = out.data();
    rotate.nDstBufSize = 18;
    rotate.enRotationAngle = MV_IMAGE_ROTATE_90;
    ASSERT_EQ(sdk().MV_CC_RotateImage(handle, &rotate), MV_OK);
    EXPECT_EQ(out, rgbPixels("daebfc"));  // 2 wide: d a / e b / f c
    EXPECT_EQ(rotate.nWidth, 2u);
    EXPECT_EQ(rotate.nHeight, 3u);
    EXPECT_EQ(rotate.nDstBufLen, 18u);
}

// The camera may turn a frame in software or through the SDK: both must agree.
TEST_F(HikSimTransformTest, TurnsTheSameWayAsTheLibrarysOwnRoutine) {
    addDevice("id=W2");
    void* handle = createHandle("W2");
    Bytes image(5 * 3);
    for (std::size_t i = 0; i < image.size(); ++i) image[i] = static_cast<std::uint8_t>(i * 7);
    for (std::uint32_t turns = 1; turns <= 3; ++turns) {
        Bytes viaSdk(image.size());
        MV_CC_ROTATE_IMAGE_PARAM rotate{};
        rotate.enPixelType = PixelType_Gvsp_Mono8;
        rotate.nWidth = 5;
        rotate.nHeight = 3;
        rotate.pSrcData = image.data();
        rotate.nSrcDataLen = 15;
        rotate.pDstBuf = viaSdk.data();
        rotate.nDstBufSize = 15;
        rotate.enRotationAngle = turns;
        ASSERT_EQ(sdk().MV_CC_RotateImage(handle, &rotate), MV_OK);

        Bytes inSoftware = image;
        unsigned char* buffer = inSoftware.data();
        std::int32_t width = 5, height = 3;
        ASSERT_EQ(
            rotateQuarterTurns(width, height, buffer, 15, 1, static_cast<std::int32_t>(turns)),
            kFrameDone);
        EXPECT_EQ(viaSdk, inSoftware) << turns << " turns";
        EXPECT_EQ(rotate.nWidth, static_cast<std::uint32_t>(width));
    }
}

TEST_F(HikSimTransformTest, RefusesOtherFormatsShortBuffersAndUnknownAngles) {
    addDevice("id=W3");
    void* handle = createHandle("W3");
    Bytes image(6), out(6);
    MV_CC_ROTATE_IMAGE_PARAM rotate{};
    rotate.enPixelType = PixelType_Gvsp_BayerRG8;
    rotate.nWidth = 3;
    rotate.nHeight = 2;
    rotate.pSrcData = image.data();
    rotate.nSrcDataLen = 6;
    rotate.pDstBuf = out.data();
    rotate.nDstBufSize = 6;
    rotate.enRotationAngle = MV_IMAGE_ROTATE_90;
    EXPECT_EQ(sdk().MV_CC_RotateImage(handle, &rotate), MV_E_SUPPORT);
    rotate.enPixelType = PixelType_Gvsp_Mono8;
    rotate.enRotationAngle = 4;
    EXPECT_EQ(sdk().MV_CC_RotateImage(handle, &rotate), MV_E_PARAMETER);
    rotate.enRotationAngle = MV_IMAGE_ROTATE_90;
    rotate.nDstBufSize = 5;
    EXPECT_EQ(sdk().MV_CC_RotateImage(handle, &rotate), MV_E_NOENOUGH_BUF);
    EXPECT_EQ(rotate.nWidth, 3u);  // untouched on failure
    rotate.nDstBufSize = 6;
    rotate.pDstBuf = image.data();  // in place
    EXPECT_EQ(sdk().MV_CC_RotateImage(handle, &rotate), MV_E_PARAMETER);

    MV_CC_FLIP_IMAGE_PARAM flip{};
    flip.enPixelType = PixelType_Gvsp_Mono8;
    flip.nWidth = 3;
    flip.nHeight = 2;
    flip.pSrcData = image.data();
    flip.nSrcDataLen = 6;
    flip.pDstBuf = out.data();
    flip.nDstBufSize = 6;
    flip.enFlipType = 3;
    EXPECT_EQ(sdk().MV_CC_FlipImage(handle, &flip), MV_E_PARAMETER);
}

}  // namespace
}  // namespace telvarra::test
