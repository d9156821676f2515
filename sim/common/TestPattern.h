// The picture every virtual camera shows: a pure function of the camera, the frame number and
// the position, so that a test can compute the bytes of frame N on its own and tell frame N from
// N + 1, a mirrored frame from a plain one, and one crop from another; and a person looking at a
// saved frame can read which camera took it, which frame it is and which way is up.
//
// The background: each colour channel is a diagonal ramp with its own slopes in x, y and time
// (mod 256), plus a fixed 16-pixel checkerboard that breaks the ramps' translation symmetry:
//   sample = x * kx[c] + y * ky[c] + frame * kf[c] + seedByte[c] + 64 * checker(x, y)   (mod 256)
// with kx = {1, 3, 2}, ky = {2, 1, 5}, kf = {3, 5, 7}, seedByte[c] = byte c of the seed and
// checker(x, y) = ((x / 16) xor (y / 16)) & 1. Every background sample changes from one frame to
// the next.
//
// Drawn over it, in black (0) and white (255) only, so that every format, a Bayer mosaic
// included, shows the same overlay (see PictureLayout):
//   - in the top-left corner a black square with a white "F", which looks different under every
//     mirror and quarter turn;
//   - right of it a black box with three lines of white capitals: the identifier, the make and
//     "FRAME n";
//   - near the bottom edge a black square with a white centre, further right in each frame and
//     wrapping round at the right edge.
// A sensor smaller than 64 x 48 pixels shows the background alone: the overlay would cover it,
// and tests of tiny frames need frames that differ.
#ifndef TELVARRA_SIM_COMMON_TESTPATTERN_H
#define TELVARRA_SIM_COMMON_TESTPATTERN_H

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "sim/common/PixelFormat.h"

namespace telvarra::sim {

// The camera a picture shows. The sizes are the sensor's, not the frame's: the overlay is laid
// out on the whole sensor, so that a frame of a region starting at the sensor's corner is the
// top-left crop of the whole picture.
struct PictureCamera {
    std::string id;
    std::string make;  // shown in capitals: "hikvision" and "HikVision" draw alike
    std::uint32_t seed = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};

// A rectangle in sensor pixels; parts beyond the frame are not drawn.
struct PictureBox {
    std::uint64_t left = 0;
    std::uint64_t top = 0;
    std::uint64_t width = 0;
    std::uint64_t height = 0;
};

// Where the overlay of a frame lies. Everything is measured in units of `unit` pixels, one unit
// a font pixel: min(width, height) / 200 of the sensor, at least 1.
//   mark:   27 units square, 2 units from the top and left edges: 9 x 9 cells of 3 units, a
//           7 x 7 "F" inside a border of one cell.
//   label:  2 units right of the mark, as high as it; text starts 2 units inside it. A glyph is
//           5 x 7 units; characters are 6 units apart, lines 8 units apart.
//   block:  12 units square, 2 units above the bottom edge (at the top when the sensor is lower
//           than 14 units), the white centre 2 units inside its edge; its left edge is
//           (frame * 6 units) mod (sensor width - 12 units + 1), or 0 on a narrower sensor.
struct PictureLayout {
    bool drawn = false;  // false: the sensor is too small for the overlay
    std::uint64_t unit = 1;
    PictureBox mark;
    PictureBox label;
    std::uint64_t textLeft = 0;
    std::uint64_t textTop = 0;
    PictureBox block;
};

PictureLayout pictureLayout(const PictureCamera& camera, std::uint32_t frame);

// The label's lines as the picture shows them: {"DA0001", "HIKVISION", "FRAME 7"}. Lower-case
// letters are shown in capitals, characters the font lacks as '?'.
std::vector<std::string> pictureLabel(const PictureCamera& camera, std::uint32_t frame);

// A glyph of the font: 7 rows top to bottom, 5 columns with bit 4 the leftmost.
using Glyph = std::array<std::uint8_t, 7>;
// The font's characters: A-Z, 0-9, space and - _ . : / # ? ( ) +.
const std::string& fontCharacters();
// The glyph of `c`; lower case as upper case, a character the font lacks as '?'.
const Glyph& glyphOf(char c);

// The background's value of colour channel `channel` (kRed, kGreen, kBlue) at (x, y) in frame
// `frame`. Mono cameras show channel kRed; other channels give 0.
std::uint8_t patternSample(std::uint32_t seed, std::uint32_t frame, std::uint32_t x,
                           std::uint32_t y, std::uint32_t channel);

// The top-left `width` x `height` pixels of frame `frame` as a camera delivering `format` sends
// it, rows back to back without padding: Mono8 one sample of kRed per pixel; RGB8 and BGR8
// three samples in their order; a Bayer mosaic one sample per pixel, of the colour the mosaic
// has at that site. `out` holds frameBytes(format, width, height) bytes. The whole frame is
// width = camera.width and height = camera.height.
void renderFrame(const PictureCamera& camera, PixelFormat format, std::uint32_t frame,
                 std::uint32_t width, std::uint32_t height, std::uint8_t* out);

// The default seed of a device: the 32-bit FNV-1a hash of its identifier.
std::uint32_t seedFromId(const std::string& id);

}  // namespace telvarra::sim

#endif
