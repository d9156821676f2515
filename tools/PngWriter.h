// Frames saved as PNG files any picture viewer opens: one channel as grey, three as colour.
#ifndef TELVARRA_TOOLS_PNGWRITER_H
#define TELVARRA_TOOLS_PNGWRITER_H

#include <filesystem>
#include <string>

#include "telvarra/Types.h"

namespace telvarra::cli {

// Writes `frame` to `path`. Blue-first frames are put in PNG's red-first order. False, with
// `error` set, for a frame that is not a whole 8-bit image of 1 or 3 channels or a file that
// cannot be written.
bool writePng(const std::filesystem::path& path, const ImageData& frame, std::string& error);

// "DA0001" -> "DA0001"; characters a file name cannot hold on every system become '_'.
std::string fileNameSafe(const std::string& text);

}  // namespace telvarra::cli

#endif
