#include "tools/Images.h"

#include "support/TempDir.h"

#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PNG
#define STBI_NO_STDIO
#include <stb/stb_image.h>

namespace telvarra::test {

Image readPng(const std::string& path, std::string& problem) {
    const std::string file = readFile(path);
    if (file.empty()) {
        problem = "missing or empty: " + path;
        return {};
    }
    int width = 0, height = 0, channels = 0;
    stbi_uc* decoded =
        stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(file.data()),
                              static_cast<int>(file.size()), &width, &height, &channels, 0);
    if (!decoded) {
        problem = std::string("undecodable: ") + stbi_failure_reason();
        return {};
    }
    Image image{
        width, height, channels,
        std::vector<std::uint8_t>(decoded, decoded + std::size_t(width) * height * channels)};
    stbi_image_free(decoded);
    return image;
}

}  // namespace telvarra::test
