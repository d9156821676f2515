// JPEG files in memory decoded to 8-bit RGB through the platform's own decoder: libjpeg-turbo on
// Linux, the Windows Imaging Component (part of every Windows) on Windows. The two decoders may
// differ by a few levels per sample; neither is ours.
#ifndef TELVARRA_PLATFORM_JPEGDECODER_H
#define TELVARRA_PLATFORM_JPEGDECODER_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace telvarra::platform {

struct RgbPicture {
    int32_t width = 0;
    int32_t height = 0;
    std::vector<unsigned char> pixels;  // R, G, B per pixel, rows back to back
};

// Decodes `size` bytes of a JPEG file into `picture`. False, with `problem` saying why and
// `picture` unchanged, for data that is not a JPEG file the decoder can read, or a picture of
// more than `maxPixels` pixels.
bool decodeJpeg(const unsigned char* data, std::size_t size, RgbPicture& picture,
                std::string& problem, std::uint64_t maxPixels = std::uint64_t{1} << 28);

}  // namespace telvarra::platform

#endif
