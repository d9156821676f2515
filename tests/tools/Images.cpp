#include "tools/Images.h"

#include "support/TempDir.h"

#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PNG
#define STBI_ONLY_PNM
#define STBI_ONLY_BMP
#define STBI_NO_STDIO
#include <stb/stb_image.h>

namespace telvarra::test {

Image readPicture(const std::string& path, std::string& problem, int channels) {
    const std::string file = readFile(path);
    if (file.empty()) {
        problem = "missing or empty: " + path;
        return {};
    }
    int width = 0, height = 0, held = 0;
    stbi_uc* decoded =
        stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(file.data()),
                              static_cast<int>(file.size()), &width, &height, &held, channels);
    if (channels == 0) channels = held;
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
