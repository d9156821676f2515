#include "support/Pictures.h"

#include <cstdlib>
#include <cstring>
#include <utility>

#include "sim/common/ImageOps.h"
#include "sim/common/TestPattern.h"

namespace telvarra::test {

namespace {

Image ofSize(int width, int height, int channels) {
    Image image{width, height, channels, {}};
    image.pixels.resize(static_cast<std::size_t>(width) * height * channels);
    return image;
}

}  // namespace

Image sensorFrame(const sim::PictureCamera& camera, sim::PixelFormat sensor, std::uint32_t frame) {
    Image image = ofSize(static_cast<int>(camera.width), static_cast<int>(camera.height),
                         static_cast<int>(sim::bytesPerPixel(sensor)));
    sim::renderFrame(camera, sensor, frame, camera.width, camera.height, image.pixels.data());
    return image;
}

Image processedFrame(const Image& sensorPicture, sim::PixelFormat sensor) {
    if (!sim::isBayer(sensor)) return sensorPicture;
    Image image = ofSize(sensorPicture.width, sensorPicture.height, 3);
    sim::demosaicBilinear(sensor, sensorPicture.pixels.data(), sensorPicture.width,
                          sensorPicture.height, image.pixels.data());
    return image;
}

Image deliveredFrame(const sim::PictureCamera& camera, sim::PixelFormat sensor,
                     std::uint32_t frame) {
    return processedFrame(sensorFrame(camera, sensor, frame), sensor);
}

Image swappedRedBlue(const Image& image) {
    Image out = image;
    for (std::size_t i = 0; i + 2 < out.pixels.size(); i += 3)
        std::swap(out.pixels[i], out.pixels[i + 2]);
    return out;
}

Image cameraFrame(const sim::PictureCamera& camera, sim::PixelFormat sensor, std::uint32_t frame) {
    Image image = deliveredFrame(camera, sensor, frame);
    return sensor == sim::PixelFormat::Bgr8 ? swappedRedBlue(image) : image;
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

Image turnedCounterClockwise(const Image& image, int quarterTurns) {
    return turnedClockwise(image, (4 - quarterTurns % 4) % 4);
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

std::string difference(const Image& actual, const Image& expected, double meanTolerance) {
    if (actual.width != expected.width || actual.height != expected.height ||
        actual.channels != expected.channels) {
        return "shape " + std::to_string(actual.width) + "x" + std::to_string(actual.height) + "x" +
               std::to_string(actual.channels) + ", expected " + std::to_string(expected.width) +
               "x" + std::to_string(expected.height) + "x" + std::to_string(expected.channels);
    }
    if (meanTolerance > 0) {
        double total = 0;
        for (std::size_t i = 0; i < actual.pixels.size(); ++i)
            total += std::abs(int(actual.pixels[i]) - int(expected.pixels[i]));
        const double mean = actual.pixels.empty() ? 0 : total / double(actual.pixels.size());
        if (mean <= meanTolerance) return "";
        return "samples differ by " + std::to_string(mean) + " on average, more than " +
               std::to_string(meanTolerance);
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
