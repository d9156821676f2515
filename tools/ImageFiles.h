// Frames saved as picture files any viewer opens: PNG, compressed by zlib at its fastest level,
// or uncompressed PGM / PPM and BMP, which machine-vision tools read as they come. One channel is
// grey, three colour; blue-first frames are written in each format's own order.
#ifndef TELVARRA_TOOLS_IMAGEFILES_H
#define TELVARRA_TOOLS_IMAGEFILES_H

#include <filesystem>
#include <string>

#include "telvarra/Types.h"

namespace telvarra::cli {

enum class ImageFileFormat { Png, Pnm, Bmp };

// "png"; "pgm" or "ppm" by the frame's channels; "bmp".
const char* fileExtension(ImageFileFormat format, int channels);

// Writes `frame` to `path`. False, with `error` set, for a frame that is not a whole 8-bit image
// of 1 or 3 channels, too large for the format, or a file that cannot be written.
bool writeImage(const std::filesystem::path& path, const ImageData& frame, ImageFileFormat format,
                std::string& error);

// "DA0001" -> "DA0001"; characters a file name cannot hold on every system become '_'.
std::string fileNameSafe(const std::string& text);

}  // namespace telvarra::cli

#endif
