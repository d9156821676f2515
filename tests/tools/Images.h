// Reading back the pictures the telvarra program saves.
#ifndef TELVARRA_TESTS_TOOLS_IMAGES_H
#define TELVARRA_TESTS_TOOLS_IMAGES_H

#include <string>

#include "support/Pictures.h"

namespace telvarra::test {

// The picture file (PNG, PGM / PPM or BMP) decoded by a decoder of its own, with as many channels
// as it holds, or `channels` when given. Empty (width 0) with `problem` set when the file is
// missing or cannot be decoded.
Image readPicture(const std::string& path, std::string& problem, int channels = 0);

}  // namespace telvarra::test

#endif
