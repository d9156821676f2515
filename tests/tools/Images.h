// Reading back the pictures the telvarra program saves.
#ifndef TELVARRA_TESTS_TOOLS_IMAGES_H
#define TELVARRA_TESTS_TOOLS_IMAGES_H

#include <string>

#include "support/Pictures.h"

namespace telvarra::test {

// The PNG file decoded. Empty (width 0) with `problem` set when the file is missing or cannot be
// decoded.
Image readPng(const std::string& path, std::string& problem);

}  // namespace telvarra::test

#endif
