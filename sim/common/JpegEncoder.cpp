#include "sim/common/JpegEncoder.h"

#include <algorithm>

// The one place stb_image_write is compiled in; static, so that it cannot meet another copy in
// a program that links the simulators' common code.
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

namespace telvarra::sim {

namespace {

void append(void* context, void* data, int size) {
    auto* file = static_cast<std::vector<std::uint8_t>*>(context);
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    file->insert(file->end(), bytes, bytes + size);
}

}  // namespace

std::vector<std::uint8_t> encodeJpeg(PixelFormat format, const std::uint8_t* pixels,
                                     std::uint32_t width, std::uint32_t height, int quality) {
    constexpr std::uint32_t kLargestSide = 65535;
    if (format != PixelFormat::Mono8 && format != PixelFormat::Rgb8) return {};
    if (!pixels || width == 0 || height == 0 || width > kLargestSide || height > kLargestSide)
        return {};
    std::vector<std::uint8_t> file;
    const int components = static_cast<int>(bytesPerPixel(format));
    if (!stbi_write_jpg_to_func(append, &file, static_cast<int>(width), static_cast<int>(height),
                                components, pixels, std::clamp(quality, 1, 100)))
        return {};
    return file;
}

}  // namespace telvarra::sim
