#include "HikVisionFixture.h"

namespace telvarra::test {

Bytes expectedFrame(sim::PixelFormat format, unsigned int seed, unsigned int number,
                    unsigned int width, unsigned int height) {
    Bytes raw(sim::frameBytes(format, width, height));
    sim::renderFrame(format, seed, number, width, height, raw.data());
    if (format == sim::PixelFormat::Mono8 || format == sim::PixelFormat::Rgb8 ||
        format == sim::PixelFormat::Bgr8) {
        return raw;
    }
    Bytes rgb(std::size_t{width} * height * 3);
    sim::demosaicBilinear(format, raw.data(), width, height, rgb.data());
    return rgb;
}

}  // namespace telvarra::test
