#include "api/PixelCodes.h"

namespace telvarra {

namespace {

struct PixelCode {
    std::uint32_t code;
    Ruvo_ImageFormat format;
};

constexpr PixelCode kPixelCodes[] = {
    {0x01080001, RUVO_FORMAT_MONO8},
    {0x02180014, RUVO_FORMAT_RGB8},
    {0x02180015, RUVO_FORMAT_BGR8},
    {0x02200016, static_cast<Ruvo_ImageFormat>(4)},
    {0x02200017, static_cast<Ruvo_ImageFormat>(5)},
    {0x01080008, RUVO_FORMAT_BAYER_GR8},
    {0x01080009, RUVO_FORMAT_BAYER_RG8},
    {0x0108000A, RUVO_FORMAT_BAYER_GB8},
    {0x0108000B, RUVO_FORMAT_BAYER_BG8},
};

}  // namespace

std::optional<Ruvo_ImageFormat> formatOfPixelCode(std::uint32_t code) {
    for (const PixelCode& entry : kPixelCodes)
        if (entry.code == code) return entry.format;
    return std::nullopt;
}

std::uint32_t pixelCodeOf(Ruvo_ImageFormat format) {
    for (const PixelCode& entry : kPixelCodes)
        if (entry.format == format) return entry.code;
    return 0;
}

bool isPackedFormat(Ruvo_ImageFormat format) {
    return format == RUVO_FORMAT_MONO8 || format == RUVO_FORMAT_RGB8 || format == RUVO_FORMAT_BGR8;
}

int32_t deliveredChannels(Ruvo_ImageFormat format) { return format == RUVO_FORMAT_MONO8 ? 1 : 3; }

const char* formatText(Ruvo_ImageFormat format) {
    switch (format) {
        case RUVO_FORMAT_MONO8:
            return "MONO8";
        case RUVO_FORMAT_RGB8:
            return "RGB8";
        case RUVO_FORMAT_BGR8:
            return "BGR8";
        default:
            return "UNKNOWN";
    }
}

}  // namespace telvarra
