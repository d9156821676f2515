#include "sim/common/TestPattern.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace telvarra::sim {

namespace {

constexpr std::uint32_t kSlopeX[3] = {1, 3, 2};
constexpr std::uint32_t kSlopeY[3] = {2, 1, 5};
constexpr std::uint32_t kSlopeFrame[3] = {3, 5, 7};

constexpr std::uint8_t kBlack = 0;
constexpr std::uint8_t kWhite = 255;

// Sizes in units (see PictureLayout).
constexpr std::uint64_t kMargin = 2;
constexpr std::uint64_t kMarkCell = 3;
constexpr std::uint64_t kMarkSide = 9 * kMarkCell;
constexpr std::uint64_t kTextInset = 2;
constexpr std::uint64_t kCharacterAdvance = 6;
constexpr std::uint64_t kLineAdvance = 8;
constexpr std::uint64_t kBlockSide = 12;
constexpr std::uint64_t kBlockInset = 2;
constexpr std::uint64_t kBlockStep = 6;
constexpr std::uint32_t kSensorPixelsPerUnit = 200;
constexpr std::uint32_t kOverlayMinimumWidth = 64;
constexpr std::uint32_t kOverlayMinimumHeight = 48;

// The orientation mark: a bold F, bit 6 the leftmost column. Unlike a glyph of the font it is
// square, so that a mirror or turn of the picture keeps it the same size and only its shape
// tells which transform was applied.
constexpr std::uint8_t kMark[7] = {
    0b1111111, 0b1111111, 0b1100000, 0b1111100, 0b1111100, 0b1100000, 0b1100000,
};

struct FontEntry {
    char character;
    Glyph rows;
};

// 5 x 7 capitals and digits; the zero is slashed so that it never reads as O.
const FontEntry kFont[] = {
    {'A', {0b01110, 0b10001, 0b10001, 0b10001, 0b11111, 0b10001, 0b10001}},
    {'B', {0b11110, 0b10001, 0b10001, 0b11110, 0b10001, 0b10001, 0b11110}},
    {'C', {0b01110, 0b10001, 0b10000, 0b10000, 0b10000, 0b10001, 0b01110}},
    {'D', {0b11100, 0b10010, 0b10001, 0b10001, 0b10001, 0b10010, 0b11100}},
    {'E', {0b11111, 0b10000, 0b10000, 0b11110, 0b10000, 0b10000, 0b11111}},
    {'F', {0b11111, 0b10000, 0b10000, 0b11110, 0b10000, 0b10000, 0b10000}},
    {'G', {0b01110, 0b10001, 0b10000, 0b10111, 0b10001, 0b10001, 0b01111}},
    {'H', {0b10001, 0b10001, 0b10001, 0b11111, 0b10001, 0b10001, 0b10001}},
    {'I', {0b01110, 0b00100, 0b00100, 0b00100, 0b00100, 0b00100, 0b01110}},
    {'J', {0b00111, 0b00010, 0b00010, 0b00010, 0b00010, 0b10010, 0b01100}},
    {'K', {0b10001, 0b10010, 0b10100, 0b11000, 0b10100, 0b10010, 0b10001}},
    {'L', {0b10000, 0b10000, 0b10000, 0b10000, 0b10000, 0b10000, 0b11111}},
    {'M', {0b10001, 0b11011, 0b10101, 0b10101, 0b10001, 0b10001, 0b10001}},
    {'N', {0b10001, 0b10001, 0b11001, 0b10101, 0b10011, 0b10001, 0b10001}},
    {'O', {0b01110, 0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b01110}},
    {'P', {0b11110, 0b10001, 0b10001, 0b11110, 0b10000, 0b10000, 0b10000}},
    {'Q', {0b01110, 0b10001, 0b10001, 0b10001, 0b10101, 0b10010, 0b01101}},
    {'R', {0b11110, 0b10001, 0b10001, 0b11110, 0b10100, 0b10010, 0b10001}},
    {'S', {0b01111, 0b10000, 0b10000, 0b01110, 0b00001, 0b00001, 0b11110}},
    {'T', {0b11111, 0b00100, 0b00100, 0b00100, 0b00100, 0b00100, 0b00100}},
    {'U', {0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b01110}},
    {'V', {0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b01010, 0b00100}},
    {'W', {0b10001, 0b10001, 0b10001, 0b10101, 0b10101, 0b10101, 0b01010}},
    {'X', {0b10001, 0b10001, 0b01010, 0b00100, 0b01010, 0b10001, 0b10001}},
    {'Y', {0b10001, 0b10001, 0b10001, 0b01010, 0b00100, 0b00100, 0b00100}},
    {'Z', {0b11111, 0b00001, 0b00010, 0b00100, 0b01000, 0b10000, 0b11111}},
    {'0', {0b01110, 0b10001, 0b10011, 0b10101, 0b11001, 0b10001, 0b01110}},
    {'1', {0b00100, 0b01100, 0b00100, 0b00100, 0b00100, 0b00100, 0b01110}},
    {'2', {0b01110, 0b10001, 0b00001, 0b00010, 0b00100, 0b01000, 0b11111}},
    {'3', {0b11111, 0b00010, 0b00100, 0b00010, 0b00001, 0b10001, 0b01110}},
    {'4', {0b00010, 0b00110, 0b01010, 0b10010, 0b11111, 0b00010, 0b00010}},
    {'5', {0b11111, 0b10000, 0b11110, 0b00001, 0b00001, 0b10001, 0b01110}},
    {'6', {0b00110, 0b01000, 0b10000, 0b11110, 0b10001, 0b10001, 0b01110}},
    {'7', {0b11111, 0b00001, 0b00010, 0b00100, 0b01000, 0b01000, 0b01000}},
    {'8', {0b01110, 0b10001, 0b10001, 0b01110, 0b10001, 0b10001, 0b01110}},
    {'9', {0b01110, 0b10001, 0b10001, 0b01111, 0b00001, 0b00010, 0b01100}},
    {' ', {0b00000, 0b00000, 0b00000, 0b00000, 0b00000, 0b00000, 0b00000}},
    {'-', {0b00000, 0b00000, 0b00000, 0b11111, 0b00000, 0b00000, 0b00000}},
    {'_', {0b00000, 0b00000, 0b00000, 0b00000, 0b00000, 0b00000, 0b11111}},
    {'.', {0b00000, 0b00000, 0b00000, 0b00000, 0b00000, 0b01100, 0b01100}},
    {':', {0b00000, 0b01100, 0b01100, 0b00000, 0b01100, 0b01100, 0b00000}},
    {'/', {0b00000, 0b00001, 0b00010, 0b00100, 0b01000, 0b10000, 0b00000}},
    {'#', {0b01010, 0b01010, 0b11111, 0b01010, 0b11111, 0b01010, 0b01010}},
    {'?', {0b01110, 0b10001, 0b00001, 0b00010, 0b00100, 0b00000, 0b00100}},
    {'(', {0b00010, 0b00100, 0b01000, 0b01000, 0b01000, 0b00100, 0b00010}},
    {')', {0b01000, 0b00100, 0b00010, 0b00010, 0b00010, 0b00100, 0b01000}},
    {'+', {0b00000, 0b00100, 0b00100, 0b11111, 0b00100, 0b00100, 0b00000}},
};

const FontEntry* findGlyph(char c) {
    for (const FontEntry& entry : kFont)
        if (entry.character == c) return &entry;
    return nullptr;
}

char shownCharacter(char c) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return findGlyph(c) ? c : '?';
}

// The frame being drawn: its top-left width x height pixels of the sensor.
struct Canvas {
    std::uint8_t* pixels;
    std::uint32_t width;
    std::uint32_t height;
    std::uint32_t bytesPerPixel;
};

// The overlay is grey only, so every sample of a pixel, a mosaic's included, is the same value
// and a run of pixels is one memset.
void fill(const Canvas& canvas, std::uint64_t left, std::uint64_t top, std::uint64_t width,
          std::uint64_t height, std::uint8_t value) {
    if (left >= canvas.width || top >= canvas.height) return;
    const std::uint64_t right = std::min<std::uint64_t>(left + width, canvas.width);
    const std::uint64_t bottom = std::min<std::uint64_t>(top + height, canvas.height);
    const std::size_t runBytes = static_cast<std::size_t>(right - left) * canvas.bytesPerPixel;
    for (std::uint64_t y = top; y < bottom; ++y) {
        std::memset(canvas.pixels + (y * canvas.width + left) * canvas.bytesPerPixel, value,
                    runBytes);
    }
}

void fill(const Canvas& canvas, const PictureBox& box, std::uint8_t value) {
    fill(canvas, box.left, box.top, box.width, box.height, value);
}

// White where `rows` has a bit, `columns` bits wide with the top bit leftmost, each bit a square
// of `cell` pixels. Only the set bits are drawn: the cost is the area of the strokes.
void drawBits(const Canvas& canvas, const std::uint8_t* rows, std::size_t rowCount,
              unsigned columns, std::uint64_t left, std::uint64_t top, std::uint64_t cell) {
    for (std::size_t row = 0; row < rowCount; ++row) {
        for (unsigned column = 0; column < columns; ++column) {
            if (!((rows[row] >> (columns - 1 - column)) & 1u)) continue;
            fill(canvas, left + column * cell, top + row * cell, cell, cell, kWhite);
        }
    }
}

void drawBackground(std::uint32_t seed, PixelFormat format, std::uint32_t frame,
                    std::uint32_t width, std::uint32_t height, std::uint8_t* out) {
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            switch (format) {
                case PixelFormat::Mono8:
                    *out++ = patternSample(seed, frame, x, y, kRed);
                    break;
                case PixelFormat::Rgb8:
                    *out++ = patternSample(seed, frame, x, y, kRed);
                    *out++ = patternSample(seed, frame, x, y, kGreen);
                    *out++ = patternSample(seed, frame, x, y, kBlue);
                    break;
                case PixelFormat::Bgr8:
                    *out++ = patternSample(seed, frame, x, y, kBlue);
                    *out++ = patternSample(seed, frame, x, y, kGreen);
                    *out++ = patternSample(seed, frame, x, y, kRed);
                    break;
                default:
                    *out++ = patternSample(seed, frame, x, y, bayerChannelAt(format, x, y));
                    break;
            }
        }
    }
}

}  // namespace

PictureLayout pictureLayout(const PictureCamera& camera, std::uint32_t frame) {
    PictureLayout layout;
    layout.drawn = camera.width >= kOverlayMinimumWidth && camera.height >= kOverlayMinimumHeight;
    const std::uint64_t unit =
        std::max<std::uint32_t>(1, std::min(camera.width, camera.height) / kSensorPixelsPerUnit);
    layout.unit = unit;
    layout.mark = {kMargin * unit, kMargin * unit, kMarkSide * unit, kMarkSide * unit};

    std::uint64_t longest = 0;
    for (const std::string& line : pictureLabel(camera, frame))
        longest = std::max<std::uint64_t>(longest, line.size());
    // The last character's gap is the right inset's first unit.
    const std::uint64_t labelWidth = 2 * kTextInset + longest * kCharacterAdvance - 1;
    layout.label = {layout.mark.left + layout.mark.width + kMargin * unit, layout.mark.top,
                    labelWidth * unit, layout.mark.height};
    layout.textLeft = layout.label.left + kTextInset * unit;
    layout.textTop = layout.label.top + kTextInset * unit;

    const std::uint64_t side = kBlockSide * unit;
    const std::uint64_t track = camera.width >= side ? camera.width - side + 1 : 1;
    const std::uint64_t above = (kBlockSide + kMargin) * unit;
    layout.block = {(std::uint64_t{frame} * kBlockStep * unit) % track,
                    camera.height >= above ? camera.height - above : 0, side, side};
    return layout;
}

std::vector<std::string> pictureLabel(const PictureCamera& camera, std::uint32_t frame) {
    std::vector<std::string> lines = {camera.id, camera.make, "FRAME " + std::to_string(frame)};
    for (std::string& line : lines)
        for (char& c : line) c = shownCharacter(c);
    return lines;
}

const std::string& fontCharacters() {
    static const std::string characters = [] {
        std::string all;
        for (const FontEntry& entry : kFont) all += entry.character;
        return all;
    }();
    return characters;
}

const Glyph& glyphOf(char c) { return findGlyph(shownCharacter(c))->rows; }

std::uint8_t patternSample(std::uint32_t seed, std::uint32_t frame, std::uint32_t x,
                           std::uint32_t y, std::uint32_t channel) {
    if (channel > kBlue) return 0;
    // Unsigned arithmetic wraps modulo 2^32, which keeps the value modulo 256 exact.
    const std::uint32_t checker = ((x >> 4) ^ (y >> 4)) & 1u;
    const std::uint32_t value = x * kSlopeX[channel] + y * kSlopeY[channel] +
                                frame * kSlopeFrame[channel] + (seed >> (8 * channel)) +
                                64 * checker;
    return static_cast<std::uint8_t>(value & 0xFFu);
}

void renderFrame(const PictureCamera& camera, PixelFormat format, std::uint32_t frame,
                 std::uint32_t width, std::uint32_t height, std::uint8_t* out) {
    drawBackground(camera.seed, format, frame, width, height, out);

    const Canvas canvas{out, width, height, bytesPerPixel(format)};
    const PictureLayout layout = pictureLayout(camera, frame);
    if (!layout.drawn) return;
    const std::uint64_t unit = layout.unit;

    fill(canvas, layout.mark, kBlack);
    const std::uint64_t cell = kMarkCell * unit;
    drawBits(canvas, kMark, std::size(kMark), 7, layout.mark.left + cell, layout.mark.top + cell,
             cell);

    fill(canvas, layout.label, kBlack);
    std::uint64_t lineTop = layout.textTop;
    for (const std::string& line : pictureLabel(camera, frame)) {
        std::uint64_t left = layout.textLeft;
        for (const char c : line) {
            if (left >= width) break;
            const Glyph& glyph = glyphOf(c);
            drawBits(canvas, glyph.data(), glyph.size(), 5, left, lineTop, unit);
            left += kCharacterAdvance * unit;
        }
        lineTop += kLineAdvance * unit;
    }

    const PictureBox& block = layout.block;
    fill(canvas, block, kBlack);
    const std::uint64_t inset = kBlockInset * unit;
    fill(canvas, block.left + inset, block.top + inset, block.width - 2 * inset,
         block.height - 2 * inset, kWhite);
}

std::uint32_t seedFromId(const std::string& id) {
    std::uint32_t hash = 2166136261u;
    for (const char c : id) {
        hash ^= static_cast<unsigned char>(c);
        hash *= 16777619u;
    }
    return hash;
}

}  // namespace telvarra::sim
