// Pictures as tests compare them: a virtual camera's frame computed on its own from the
// simulator's test pattern, the geometry the library applies done with the simulator's image
// routines (an implementation independent of the library's), and a readable first difference.
#ifndef TELVARRA_TESTS_PICTURES_H
#define TELVARRA_TESTS_PICTURES_H

#include <cstdint>
#include <string>
#include <vector>

#include "sim/common/PixelFormat.h"
#include "sim/common/TestPattern.h"

namespace telvarra::test {

struct Image {
    int width = 0;
    int height = 0;
    int channels = 0;
    std::vector<std::uint8_t> pixels;  // rows back to back
};

// Frame `frame` of the whole sensor of `camera` as the sensor sends it: Bayer mosaics as they
// are, one byte a pixel.
Image sensorFrame(const sim::PictureCamera& camera, sim::PixelFormat sensor, std::uint32_t frame);
// Frame `frame` as the library hands it to a host: Bayer mosaics demosaiced to RGB, the packed
// formats as the sensor sends them (mono one channel, BGR in B, G, R order).
Image deliveredFrame(const sim::PictureCamera& camera, sim::PixelFormat sensor,
                     std::uint32_t frame);
// A sensor's picture as the library hands it on: Bayer mosaics demosaiced to RGB, the packed
// formats as they are.
Image processedFrame(const Image& sensorPicture, sim::PixelFormat sensor);
// The first and third samples of every pixel swapped: BGR as RGB and back.
Image swappedRedBlue(const Image& image);
// The same frame as a picture shows it: BGR put in RGB order.
Image cameraFrame(const sim::PictureCamera& camera, sim::PixelFormat sensor, std::uint32_t frame);

Image mirroredLeftRight(const Image& image);
Image mirroredTopBottom(const Image& image);
Image turnedClockwise(const Image& image, int quarterTurns);
Image turnedCounterClockwise(const Image& image, int quarterTurns);
// The digital zoom's centred window: 640 (level 1) or 320 (level 2) pixels wide, as high as the
// frame's proportions make it.
Image zoomed(const Image& image, int level);

// Empty when the two are the same picture; otherwise what differs first. With a tolerance, the
// same shape with samples that differ by at most `meanTolerance` on average is the same picture:
// what a JPEG file's compression leaves of it, while a wrong mirror, turn or frame differs by
// tens of levels.
std::string difference(const Image& actual, const Image& expected, double meanTolerance = 0);

}  // namespace telvarra::test

#endif
