// Pictures as the tests compare them: decoded back from the program's PNG files, and computed
// on their own from the virtual camera's test pattern.
#ifndef TELVARRA_TESTS_TOOLS_IMAGES_H
#define TELVARRA_TESTS_TOOLS_IMAGES_H

#include <cstdint>
#include <string>
#include <vector>

#include "sim/common/PixelFormat.h"

namespace telvarra::test {

struct Image {
    int width = 0;
    int height = 0;
    int channels = 0;
    std::vector<std::uint8_t> pixels;  // rows back to back, red first
};

// The PNG file decoded. Empty (width 0) with `problem` set when the file is missing, is not a
// PNG, or has a chunk whose checksum does not match: a picture viewer would reject it too.
Image readPng(const std::string& path, std::string& problem);

// Frame `frame` of a virtual camera whose sensor delivers `delivered`, as the library hands it
// to the host: Bayer mosaics demosaiced to RGB, mono as one channel, BGR put in RGB order.
Image cameraFrame(sim::PixelFormat delivered, std::uint32_t seed, std::uint32_t frame,
                  std::uint32_t width, std::uint32_t height);

Image mirroredLeftRight(const Image& image);
Image mirroredTopBottom(const Image& image);
Image turnedClockwise(const Image& image, int quarterTurns);
// The digital zoom's centred window: 640 (level 1) or 320 (level 2) pixels wide, as high as the
// frame's proportions make it.
Image zoomed(const Image& image, int level);

// Empty when the two are the same picture; otherwise what differs first.
std::string difference(const Image& actual, const Image& expected);

}  // namespace telvarra::test

#endif
