#include "PngWriter.h"

#include <cstdint>
#include <fstream>
#include <vector>

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STBI_WRITE_NO_STDIO  // the file is ours: opened by path, so any name works everywhere
#include <stb/stb_image_write.h>

namespace telvarra::cli {

namespace {

void appendToStream(void* context, void* data, int size) {
    static_cast<std::ofstream*>(context)->write(static_cast<const char*>(data), size);
}

}  // namespace

bool writePng(const std::filesystem::path& path, const ImageData& frame, std::string& error) {
    const int channels = frame.channels;
    if (!frame.data || frame.width < 1 || frame.height < 1 || (channels != 1 && channels != 3)) {
        error = "the frame is not an image of 1 or 3 channels";
        return false;
    }
    const int64_t stride = int64_t{frame.width} * channels;
    if (stride * frame.height > frame.dataSize) {
        error = "the frame holds fewer bytes than its size needs";
        return false;
    }

    const unsigned char* pixels = frame.data;
    std::vector<unsigned char> swapped;
    if (frame.format == RUVO_FORMAT_BGR8 && channels == 3) {
        swapped.assign(frame.data, frame.data + stride * frame.height);
        for (std::size_t i = 0; i + 2 < swapped.size(); i += 3)
            std::swap(swapped[i], swapped[i + 2]);
        pixels = swapped.data();
    }

    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!file) {
        error = "cannot create " + path.string();
        return false;
    }
    const int encoded = stbi_write_png_to_func(appendToStream, &file, frame.width, frame.height,
                                               channels, pixels, static_cast<int>(stride));
    file.close();
    if (!encoded || !file) {
        error = "cannot write " + path.string();
        return false;
    }
    return true;
}

std::string fileNameSafe(const std::string& text) {
    std::string name = text;
    for (char& c : name) {
        const bool kept = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                          (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.';
        if (!kept) c = '_';
    }
    return name.empty() ? "camera" : name;
}

}  // namespace telvarra::cli
