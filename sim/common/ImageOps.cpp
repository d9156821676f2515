#include "sim/common/ImageOps.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

namespace telvarra::sim {

namespace {

std::size_t at(std::uint32_t x, std::uint32_t y, std::uint32_t width) {
    return std::size_t{y} * width + x;
}

}  // namespace

namespace {

// The rounded mean of the samples of each colour in the 3 x 3 window around (x, y), cut at the
// image's edge; the site's own colour is its own sample.
void demosaicByWindow(PixelFormat mosaic, const std::uint8_t* raw, std::uint32_t width,
                      std::uint32_t height, std::uint32_t x, std::uint32_t y, std::uint8_t* rgb) {
    const std::uint32_t top = y == 0 ? 0 : y - 1;
    const std::uint32_t bottom = std::min(y + 1, height - 1);
    const std::uint32_t left = x == 0 ? 0 : x - 1;
    const std::uint32_t right = std::min(x + 1, width - 1);
    std::uint32_t sum[3] = {0, 0, 0};
    std::uint32_t count[3] = {0, 0, 0};
    for (std::uint32_t j = top; j <= bottom; ++j) {
        for (std::uint32_t i = left; i <= right; ++i) {
            const std::uint32_t channel = bayerChannelAt(mosaic, i, j);
            sum[channel] += raw[at(i, j, width)];
            ++count[channel];
        }
    }
    const std::uint32_t own = bayerChannelAt(mosaic, x, y);
    std::uint8_t* pixel = rgb + at(x, y, width) * 3;
    for (std::uint32_t channel = 0; channel < 3; ++channel) {
        if (channel == own)
            pixel[channel] = raw[at(x, y, width)];
        else if (count[channel] == 0)
            pixel[channel] = 0;
        else
            pixel[channel] =
                static_cast<std::uint8_t>((sum[channel] + count[channel] / 2) / count[channel]);
    }
}

}  // namespace

// Inside the edge the window always holds the same samples: a red or blue site has four greens
// beside it and four of the other colour at its corners; a green site two of one colour beside
// it and two of the other above and below. The same means, written out: an SDK's conversion
// keeps up with its camera, and so does this one.
void demosaicBilinear(PixelFormat mosaic, const std::uint8_t* raw, std::uint32_t width,
                      std::uint32_t height, std::uint8_t* rgb) {
    for (std::uint32_t y = 0; y < height; ++y) {
        if (y == 0 || y + 1 >= height || width < 3) {
            for (std::uint32_t x = 0; x < width; ++x)
                demosaicByWindow(mosaic, raw, width, height, x, y, rgb);
            continue;
        }
        demosaicByWindow(mosaic, raw, width, height, 0, y, rgb);
        demosaicByWindow(mosaic, raw, width, height, width - 1, y, rgb);
        const std::uint8_t* above = raw + at(0, y - 1, width);
        const std::uint8_t* row = raw + at(0, y, width);
        const std::uint8_t* below = raw + at(0, y + 1, width);
        const std::uint32_t own[2] = {bayerChannelAt(mosaic, 0, y), bayerChannelAt(mosaic, 1, y)};
        const std::uint32_t vertical[2] = {bayerChannelAt(mosaic, 0, y + 1),
                                           bayerChannelAt(mosaic, 1, y + 1)};
        for (std::uint32_t x = 1; x + 1 < width; ++x) {
            const std::uint32_t parity = x & 1;
            std::uint8_t* pixel = rgb + at(x, y, width) * 3;
            pixel[own[parity]] = row[x];
            if (own[parity] == kGreen) {
                pixel[own[1 - parity]] =
                    static_cast<std::uint8_t>((row[x - 1] + row[x + 1] + 1) >> 1);
                pixel[vertical[parity]] = static_cast<std::uint8_t>((above[x] + below[x] + 1) >> 1);
            } else {
                pixel[kGreen] = static_cast<std::uint8_t>(
                    (above[x] + below[x] + row[x - 1] + row[x + 1] + 2) >> 2);
                pixel[kRed + kBlue - own[parity]] = static_cast<std::uint8_t>(
                    (above[x - 1] + above[x + 1] + below[x - 1] + below[x + 1] + 2) >> 2);
            }
        }
    }
}

void convertToRgb8(PixelFormat source, const std::uint8_t* in, std::uint32_t width,
                   std::uint32_t height, std::uint8_t* rgb) {
    const std::size_t pixels = std::size_t{width} * height;
    switch (source) {
        case PixelFormat::Rgb8:
            std::memcpy(rgb, in, pixels * 3);
            break;
        case PixelFormat::Bgr8:
            for (std::size_t p = 0; p < pixels; ++p) {
                rgb[p * 3] = in[p * 3 + 2];
                rgb[p * 3 + 1] = in[p * 3 + 1];
                rgb[p * 3 + 2] = in[p * 3];
            }
            break;
        case PixelFormat::Mono8:
            for (std::size_t p = 0; p < pixels; ++p)
                rgb[p * 3] = rgb[p * 3 + 1] = rgb[p * 3 + 2] = in[p];
            break;
        default:
            demosaicBilinear(source, in, width, height, rgb);
            break;
    }
}

void convertImage(PixelFormat source, const std::uint8_t* in, std::uint32_t width,
                  std::uint32_t height, PixelFormat target, std::uint8_t* out) {
    const std::size_t pixels = std::size_t{width} * height;
    if (source == PixelFormat::Mono8 && target == PixelFormat::Mono8) {
        std::memcpy(out, in, pixels);
        return;
    }
    if (target == PixelFormat::Rgb8) {
        convertToRgb8(source, in, width, height, out);
        return;
    }
    if (target == PixelFormat::Bgr8) {
        // Red first into the output, then each pixel's ends swapped: no frame-sized temporary.
        convertToRgb8(source, in, width, height, out);
        for (std::size_t p = 0; p < pixels; ++p) std::swap(out[p * 3], out[p * 3 + 2]);
        return;
    }
    if (target != PixelFormat::Mono8) return;
    std::vector<std::uint8_t> rgb(pixels * 3);
    convertToRgb8(source, in, width, height, rgb.data());
    for (std::size_t p = 0; p < pixels; ++p) {
        const std::uint8_t* pixel = &rgb[p * 3];
        out[p] = static_cast<std::uint8_t>(
            (77u * pixel[0] + 150u * pixel[1] + 29u * pixel[2] + 128u) >> 8);
    }
}

void cropImage(const std::uint8_t* in, std::uint32_t width, std::uint32_t bytesPerPixel,
               std::uint32_t left, std::uint32_t top, std::uint32_t cropWidth,
               std::uint32_t cropHeight, std::uint8_t* out) {
    const std::size_t row = std::size_t{cropWidth} * bytesPerPixel;
    for (std::uint32_t y = 0; y < cropHeight; ++y)
        std::memcpy(out + y * row, in + at(left, top + y, width) * bytesPerPixel, row);
}

void flipVertical(const std::uint8_t* in, std::uint32_t width, std::uint32_t height,
                  std::uint32_t bytesPerPixel, std::uint8_t* out) {
    const std::size_t row = std::size_t{width} * bytesPerPixel;
    for (std::uint32_t y = 0; y < height; ++y)
        std::memcpy(out + (height - 1 - y) * row, in + y * row, row);
}

void flipHorizontal(const std::uint8_t* in, std::uint32_t width, std::uint32_t height,
                    std::uint32_t bytesPerPixel, std::uint8_t* out) {
    for (std::uint32_t y = 0; y < height; ++y)
        for (std::uint32_t x = 0; x < width; ++x)
            std::memcpy(out + at(width - 1 - x, y, width) * bytesPerPixel,
                        in + at(x, y, width) * bytesPerPixel, bytesPerPixel);
}

void rotateClockwise(const std::uint8_t* in, std::uint32_t width, std::uint32_t height,
                     std::uint32_t bytesPerPixel, std::uint32_t quarterTurns, std::uint8_t* out) {
    const std::uint32_t turns = quarterTurns % 4;
    const std::uint32_t outWidth = turns % 2 ? height : width;
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            std::uint32_t toX = x;
            std::uint32_t toY = y;
            switch (turns) {
                case 1:
                    toX = height - 1 - y;
                    toY = x;
                    break;  // top row becomes right column
                case 2:
                    toX = width - 1 - x;
                    toY = height - 1 - y;
                    break;
                case 3:
                    toX = y;
                    toY = width - 1 - x;
                    break;  // top row becomes left column
                default:
                    break;
            }
            std::memcpy(out + at(toX, toY, outWidth) * bytesPerPixel,
                        in + at(x, y, width) * bytesPerPixel, bytesPerPixel);
        }
    }
}

bool buffersOverlap(const void* a, std::size_t aBytes, const void* b, std::size_t bBytes) {
    const auto first = reinterpret_cast<std::uintptr_t>(a);
    const auto second = reinterpret_cast<std::uintptr_t>(b);
    return first < second + bBytes && second < first + aBytes;
}

}  // namespace telvarra::sim
