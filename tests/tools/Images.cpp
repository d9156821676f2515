#include "tools/Images.h"

#include <array>
#include <cstring>

#include "sim/common/ImageOps.h"
#include "sim/common/TestPattern.h"
#include "support/TempDir.h"

#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PNG
#define STBI_NO_STDIO
#include <stb/stb_image.h>

namespace telvarra::test {

namespace {

std::uint32_t bigEndian32(const std::uint8_t* bytes) {
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 |
           std::uint32_t{bytes[2]} << 8 | bytes[3];
}

std::uint32_t crc32(const std::uint8_t* data, std::size_t size) {
    static const std::array<std::uint32_t, 256> table = [] {
        std::array<std::uint32_t, 256> entries{};
        for (std::uint32_t n = 0; n < 256; ++n) {
            std::uint32_t c = n;
            for (int k = 0; k < 8; ++k) c = c & 1 ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            entries[n] = c;
        }
        return entries;
    }();
    std::uint32_t c = 0xFFFFFFFFu;
    for (std::size_t i = 0; i < size; ++i) c = table[(c ^ data[i]) & 0xFF] ^ (c >> 8);
    return c ^ 0xFFFFFFFFu;
}

// The signature, then chunks each with a matching checksum, the last one IEND.
std::string chunkProblem(const std::string& file) {
    static const std::uint8_t kSignature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(file.data());
    if (file.size() < 8 || std::memcmp(bytes, kSignature, 8) != 0) return "no PNG signature";
    std::size_t at = 8;
    while (at + 12 <= file.size()) {
        const std::uint32_t length = bigEndian32(bytes + at);
        if (at + 12 + length > file.size()) return "chunk runs past the end of the file";
        const std::string type(file, at + 4, 4);
        if (crc32(bytes + at + 4, length + 4) != bigEndian32(bytes + at + 8 + length)) {
            return "bad checksum in chunk " + type;
        }
        at += 12 + length;
        if (type == "IEND") return at == file.size() ? "" : "bytes after IEND";
    }
    return "no IEND chunk";
}

Image ofSize(int width, int height, int channels) {
    Image image{width, height, channels, {}};
    image.pixels.resize(static_cast<std::size_t>(width) * height * channels);
    return image;
}

}  // namespace

Image readPng(const std::string& path, std::string& problem) {
    const std::string file = readFile(path);
    if (file.empty()) {
        problem = "missing or empty: " + path;
        return {};
    }
    problem = chunkProblem(file);
    if (!problem.empty()) return {};
    int width = 0, height = 0, channels = 0;
    stbi_uc* decoded =
        stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(file.data()),
                              static_cast<int>(file.size()), &width, &height, &channels, 0);
    if (!decoded) {
        problem = std::string("undecodable: ") + stbi_failure_reason();
        return {};
    }
    Image image = ofSize(width, height, channels);
    std::memcpy(image.pixels.data(), decoded, image.pixels.size());
    stbi_image_free(decoded);
    return image;
}

Image cameraFrame(sim::PixelFormat delivered, std::uint32_t seed, std::uint32_t frame,
                  std::uint32_t width, std::uint32_t height) {
    std::vector<std::uint8_t> raw(sim::frameBytes(delivered, width, height));
    sim::renderFrame(delivered, seed, frame, width, height, raw.data());
    if (delivered == sim::PixelFormat::Mono8) {
        Image image = ofSize(static_cast<int>(width), static_cast<int>(height), 1);
        image.pixels = raw;
        return image;
    }
    Image image = ofSize(static_cast<int>(width), static_cast<int>(height), 3);
    sim::convertToRgb8(delivered, raw.data(), width, height, image.pixels.data());
    return image;
}

Image mirroredLeftRight(const Image& image) {
    Image out = ofSize(image.width, image.height, image.channels);
    sim::flipHorizontal(image.pixels.data(), image.width, image.height, image.channels,
                        out.pixels.data());
    return out;
}

Image mirroredTopBottom(const Image& image) {
    Image out = ofSize(image.width, image.height, image.channels);
    sim::flipVertical(image.pixels.data(), image.width, image.height, image.channels,
                      out.pixels.data());
    return out;
}

Image turnedClockwise(const Image& image, int quarterTurns) {
    const bool sideways = quarterTurns % 2 == 1;
    Image out = ofSize(sideways ? image.height : image.width, sideways ? image.width : image.height,
                       image.channels);
    sim::rotateClockwise(image.pixels.data(), image.width, image.height, image.channels,
                         quarterTurns, out.pixels.data());
    return out;
}

Image zoomed(const Image& image, int level) {
    const int width = level == 1 ? 640 : 320;
    const int height = static_cast<int>(static_cast<double>(image.height) / image.width * width);
    const int left = image.width / 2 - width / 2;
    const int top = image.height / 2 - height / 2;
    Image out = ofSize(width, height, image.channels);
    const std::size_t rowBytes = static_cast<std::size_t>(width) * image.channels;
    for (int row = 0; row < height; ++row) {
        const std::size_t from =
            (static_cast<std::size_t>(top + row) * image.width + left) * image.channels;
        std::memcpy(out.pixels.data() + row * rowBytes, image.pixels.data() + from, rowBytes);
    }
    return out;
}

std::string difference(const Image& actual, const Image& expected) {
    if (actual.width != expected.width || actual.height != expected.height ||
        actual.channels != expected.channels) {
        return "shape " + std::to_string(actual.width) + "x" + std::to_string(actual.height) + "x" +
               std::to_string(actual.channels) + ", expected " + std::to_string(expected.width) +
               "x" + std::to_string(expected.height) + "x" + std::to_string(expected.channels);
    }
    for (std::size_t i = 0; i < actual.pixels.size(); ++i) {
        if (actual.pixels[i] == expected.pixels[i]) continue;
        const std::size_t pixel = i / actual.channels;
        return "sample " + std::to_string(i % actual.channels) + " of pixel (" +
               std::to_string(pixel % actual.width) + ", " + std::to_string(pixel / actual.width) +
               ") is " + std::to_string(actual.pixels[i]) + ", expected " +
               std::to_string(expected.pixels[i]);
    }
    return "";
}

}  // namespace telvarra::test
