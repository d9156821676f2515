#include "ImageFiles.h"

#include <zlib.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <limits>
#include <vector>

namespace telvarra::cli {

namespace {

// A frame checked to be a whole picture, row by row in the order a format wants.
class Rows {
  public:
    Rows(const ImageData& frame, bool blueFirst)
        : m_frame(frame),
          m_stride(static_cast<std::size_t>(frame.width) * frame.channels),
          m_swap(frame.channels == 3 && (frame.format == RUVO_FORMAT_BGR8) != blueFirst),
          m_scratch(m_swap ? 2 * m_stride : 0) {}

    std::size_t stride() const { return m_stride; }
    // Row `y`; valid until the next row but one is asked for (the previous one stays readable,
    // as PNG's filter needs it).
    const unsigned char* row(int y) {
        const unsigned char* pixels = m_frame.data + static_cast<std::size_t>(y) * m_stride;
        if (!m_swap) return pixels;
        unsigned char* swapped = m_scratch.data() + (y & 1) * m_stride;
        for (std::size_t i = 0; i + 2 < m_stride; i += 3) {
            swapped[i] = pixels[i + 2];
            swapped[i + 1] = pixels[i + 1];
            swapped[i + 2] = pixels[i];
        }
        return swapped;
    }

  private:
    const ImageData& m_frame;
    std::size_t m_stride;
    bool m_swap;
    std::vector<unsigned char> m_scratch;
};

bool wholePicture(const ImageData& frame, std::string& error) {
    if (!frame.data || frame.width < 1 || frame.height < 1 ||
        (frame.channels != 1 && frame.channels != 3)) {
        error = "the frame is not an image of 1 or 3 channels";
        return false;
    }
    if (int64_t{frame.width} * frame.channels * frame.height > frame.dataSize) {
        error = "the frame holds fewer bytes than its size needs";
        return false;
    }
    return true;
}

// A file written through a buffer of its own: a frame is megabytes, the stream's default buffer
// a few kilobytes.
class OutputFile {
  public:
    explicit OutputFile(const std::filesystem::path& path) : m_buffer(1 << 20) {
        m_file.rdbuf()->pubsetbuf(m_buffer.data(), static_cast<std::streamsize>(m_buffer.size()));
        m_file.open(path, std::ios::binary | std::ios::trunc);
    }
    bool isOpen() const { return m_file.is_open(); }
    void write(const void* data, std::size_t bytes) {
        m_file.write(static_cast<const char*>(data), static_cast<std::streamsize>(bytes));
    }
    bool close() {
        m_file.close();
        return !m_file.fail();
    }

  private:
    std::vector<char> m_buffer;
    std::ofstream m_file;
};

void putBigEndian32(unsigned char* at, uint32_t value) {
    for (int i = 0; i < 4; ++i) at[i] = static_cast<unsigned char>(value >> (24 - 8 * i));
}

void putLittleEndian(std::vector<unsigned char>& out, uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<unsigned char>(value >> (8 * i)));
}

void pngChunk(OutputFile& file, const char* type, const unsigned char* data, std::size_t bytes) {
    unsigned char head[8];
    putBigEndian32(head, static_cast<uint32_t>(bytes));
    std::memcpy(head + 4, type, 4);
    file.write(head, 8);
    if (bytes > 0) file.write(data, bytes);
    uLong crc = crc32(0L, head + 4, 4);
    crc = crc32(crc, data, static_cast<uInt>(bytes));
    unsigned char tail[4];
    putBigEndian32(tail, static_cast<uint32_t>(crc));
    file.write(tail, 4);
}

// Every row filtered by its difference to the row above (PNG's "Up"), which leaves little but
// noise in a camera's picture, then deflated at zlib's fastest level with the strategy meant for
// filtered data: measured the quickest of zlib's settings by far, at a few per cent of the
// size of the pixels on the test pattern.
bool writePng(OutputFile& file, const ImageData& frame, std::string& error) {
    static constexpr unsigned char kSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    file.write(kSignature, sizeof kSignature);
    unsigned char header[13];
    putBigEndian32(header, static_cast<uint32_t>(frame.width));
    putBigEndian32(header + 4, static_cast<uint32_t>(frame.height));
    header[8] = 8;                             // bits per sample
    header[9] = frame.channels == 1 ? 0 : 2;   // grey or RGB
    header[10] = header[11] = header[12] = 0;  // deflate, adaptive filters, no interlace
    pngChunk(file, "IHDR", header, sizeof header);

    z_stream stream{};
    if (deflateInit2(&stream, 1, Z_DEFLATED, 15, 8, Z_FILTERED) != Z_OK) {
        error = "zlib would not start";
        return false;
    }
    Rows rows(frame, false);
    const std::size_t stride = rows.stride();
    std::vector<unsigned char> filtered(stride + 1);
    const std::vector<unsigned char> zeros(stride, 0);
    std::vector<unsigned char> compressed(1 << 20);
    stream.next_out = compressed.data();
    stream.avail_out = static_cast<uInt>(compressed.size());
    const auto flushChunk = [&] {
        pngChunk(file, "IDAT", compressed.data(), compressed.size() - stream.avail_out);
        stream.next_out = compressed.data();
        stream.avail_out = static_cast<uInt>(compressed.size());
    };
    const unsigned char* above = zeros.data();
    int status = Z_OK;
    for (int y = 0; y <= frame.height && status != Z_STREAM_END; ++y) {
        const bool last = y == frame.height;
        if (!last) {
            const unsigned char* row = rows.row(y);
            filtered[0] = 2;  // Up
            for (std::size_t i = 0; i < stride; ++i)
                filtered[i + 1] = static_cast<unsigned char>(row[i] - above[i]);
            above = row;
            stream.next_in = filtered.data();
            stream.avail_in = static_cast<uInt>(filtered.size());
        }
        do {
            status = deflate(&stream, last ? Z_FINISH : Z_NO_FLUSH);
            if (status == Z_STREAM_ERROR) break;
            if (stream.avail_out == 0) flushChunk();
        } while (stream.avail_in > 0 || (last && status != Z_STREAM_END));
    }
    deflateEnd(&stream);
    if (status != Z_STREAM_END) {
        error = "zlib failed to compress the frame";
        return false;
    }
    if (stream.avail_out < compressed.size()) flushChunk();
    pngChunk(file, "IEND", nullptr, 0);
    return true;
}

// P5 (grey) or P6 (colour), binary samples.
void writePnm(OutputFile& file, const ImageData& frame) {
    char header[64];
    const int length = std::snprintf(header, sizeof header, "P%d\n%d %d\n255\n",
                                     frame.channels == 1 ? 5 : 6, frame.width, frame.height);
    file.write(header, static_cast<std::size_t>(length));
    Rows rows(frame, false);
    for (int y = 0; y < frame.height; ++y) file.write(rows.row(y), rows.stride());
}

// Windows' device-independent bitmap: 8 bits with a grey palette or 24 bits blue first, rows
// from the bottom up, each padded to a multiple of 4 bytes.
bool writeBmp(OutputFile& file, const ImageData& frame, std::string& error) {
    Rows rows(frame, true);
    const std::size_t padded = (rows.stride() + 3) & ~std::size_t{3};
    const uint32_t palette = frame.channels == 1 ? 256 * 4 : 0;
    const uint32_t offset = 14 + 40 + palette;
    const uint64_t fileSize = offset + uint64_t{padded} * static_cast<uint64_t>(frame.height);
    if (fileSize > std::numeric_limits<uint32_t>::max()) {
        error = "the frame is too large for a BMP file";
        return false;
    }
    std::vector<unsigned char> header = {'B', 'M'};
    putLittleEndian(header, static_cast<uint32_t>(fileSize), 4);
    putLittleEndian(header, 0, 4);  // reserved
    putLittleEndian(header, offset, 4);
    putLittleEndian(header, 40, 4);  // the info header's size
    putLittleEndian(header, static_cast<uint32_t>(frame.width), 4);
    putLittleEndian(header, static_cast<uint32_t>(frame.height), 4);  // positive: bottom up
    putLittleEndian(header, 1, 2);                                    // planes
    putLittleEndian(header, frame.channels == 1 ? 8 : 24, 2);
    putLittleEndian(header, 0, 4);  // uncompressed
    putLittleEndian(header, static_cast<uint32_t>(fileSize - offset), 4);
    putLittleEndian(header, 2835, 4);  // 72 dots per inch, as pixels per metre
    putLittleEndian(header, 2835, 4);
    putLittleEndian(header, frame.channels == 1 ? 256 : 0, 4);  // palette entries
    putLittleEndian(header, 0, 4);
    for (uint32_t grey = 0; grey < palette / 4; ++grey) {
        const auto level = static_cast<unsigned char>(grey);
        header.insert(header.end(), {level, level, level, 0});
    }
    file.write(header.data(), header.size());
    const unsigned char padding[3] = {0, 0, 0};
    for (int y = frame.height - 1; y >= 0; --y) {
        file.write(rows.row(y), rows.stride());
        file.write(padding, padded - rows.stride());
    }
    return true;
}

}  // namespace

const char* fileExtension(ImageFileFormat format, int channels) {
    switch (format) {
        case ImageFileFormat::Pnm:
            return channels == 1 ? "pgm" : "ppm";
        case ImageFileFormat::Bmp:
            return "bmp";
        case ImageFileFormat::Png:
            break;
    }
    return "png";
}

bool writeImage(const std::filesystem::path& path, const ImageData& frame, ImageFileFormat format,
                std::string& error) {
    if (!wholePicture(frame, error)) return false;
    OutputFile file(path);
    if (!file.isOpen()) {
        error = "cannot create " + path.string();
        return false;
    }
    bool encoded = true;
    switch (format) {
        case ImageFileFormat::Png:
            encoded = writePng(file, frame, error);
            break;
        case ImageFileFormat::Pnm:
            writePnm(file, frame);
            break;
        case ImageFileFormat::Bmp:
            encoded = writeBmp(file, frame, error);
            break;
    }
    if (!file.close() && encoded) {
        error = "cannot write " + path.string();
        return false;
    }
    return encoded;
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
