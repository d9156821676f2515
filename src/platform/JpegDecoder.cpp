#include "platform/JpegDecoder.h"

#include <limits>
#include <memory>

#ifdef _WIN32
#include <objbase.h>
#include <wincodec.h>
#else
#include <turbojpeg.h>
#endif

namespace telvarra::platform {

namespace {

constexpr int kChannels = 3;

bool sizeAllowed(int64_t width, int64_t height, std::uint64_t maxPixels, std::string& problem) {
    if (width < 1 || height < 1 || static_cast<std::uint64_t>(width * height) > maxPixels) {
        problem = "picture of " + std::to_string(width) + " x " + std::to_string(height) +
                  " pixels refused";
        return false;
    }
    return true;
}

}  // namespace

#ifdef _WIN32

namespace {

// Releases a COM interface when it goes out of scope.
template <class Interface>
struct ComRelease {
    void operator()(Interface* object) const { object->Release(); }
};
template <class Interface>
using ComPointer = std::unique_ptr<Interface, ComRelease<Interface>>;

// COM for the calling thread, in whatever apartment the host chose for it already: the imaging
// factory works in both, so a thread the host made single-threaded is used as it is.
class ComScope {
  public:
    ComScope() : m_result(CoInitializeEx(nullptr, COINIT_MULTITHREADED)) {}
    ~ComScope() {
        if (SUCCEEDED(m_result)) CoUninitialize();
    }
    bool usable() const { return SUCCEEDED(m_result) || m_result == RPC_E_CHANGED_MODE; }

  private:
    HRESULT m_result;
};

bool failed(HRESULT result, const char* step, std::string& problem) {
    if (SUCCEEDED(result)) return false;
    problem =
        std::string(step) + " failed (HRESULT " + std::to_string(static_cast<long>(result)) + ")";
    return true;
}

}  // namespace

bool decodeJpeg(const unsigned char* data, std::size_t size, RgbPicture& picture,
                std::string& problem, std::uint64_t maxPixels) {
    if (!data || size == 0 || size > std::numeric_limits<DWORD>::max()) {
        problem = "no JPEG data";
        return false;
    }
    ComScope com;
    if (!com.usable()) {
        problem = "COM could not be started on this thread";
        return false;
    }
    IWICImagingFactory* rawFactory = nullptr;
    if (failed(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                IID_PPV_ARGS(&rawFactory)),
               "creating the imaging factory", problem))
        return false;
    ComPointer<IWICImagingFactory> factory(rawFactory);

    IWICStream* rawStream = nullptr;
    if (failed(factory->CreateStream(&rawStream), "creating a stream", problem)) return false;
    ComPointer<IWICStream> stream(rawStream);
    // The stream only reads the bytes; the interface wants them writable.
    if (failed(stream->InitializeFromMemory(const_cast<BYTE*>(data), static_cast<DWORD>(size)),
               "reading the data", problem))
        return false;

    IWICBitmapDecoder* rawDecoder = nullptr;
    if (failed(factory->CreateDecoderFromStream(stream.get(), &GUID_ContainerFormatJpeg,
                                                WICDecodeMetadataCacheOnDemand, &rawDecoder),
               "opening the JPEG data", problem))
        return false;
    ComPointer<IWICBitmapDecoder> decoder(rawDecoder);
    IWICBitmapFrameDecode* rawFrame = nullptr;
    if (failed(decoder->GetFrame(0, &rawFrame), "reading the picture", problem)) return false;
    ComPointer<IWICBitmapFrameDecode> frame(rawFrame);

    UINT width = 0, height = 0;
    if (failed(frame->GetSize(&width, &height), "reading the size", problem) ||
        !sizeAllowed(width, height, maxPixels, problem))
        return false;
    IWICFormatConverter* rawConverter = nullptr;
    if (failed(factory->CreateFormatConverter(&rawConverter), "creating a converter", problem))
        return false;
    ComPointer<IWICFormatConverter> converter(rawConverter);
    if (failed(
            converter->Initialize(frame.get(), GUID_WICPixelFormat24bppRGB, WICBitmapDitherTypeNone,
                                  nullptr, 0.0, WICBitmapPaletteTypeCustom),
            "converting to RGB", problem))
        return false;

    const std::size_t stride = std::size_t{width} * kChannels;
    std::vector<unsigned char> pixels(stride * height);
    if (failed(converter->CopyPixels(nullptr, static_cast<UINT>(stride),
                                     static_cast<UINT>(pixels.size()), pixels.data()),
               "decoding", problem))
        return false;
    picture.width = static_cast<int32_t>(width);
    picture.height = static_cast<int32_t>(height);
    picture.pixels.swap(pixels);
    return true;
}

#else

namespace {

struct DecompressorRelease {
    void operator()(void* handle) const { tjDestroy(handle); }
};

}  // namespace

bool decodeJpeg(const unsigned char* data, std::size_t size, RgbPicture& picture,
                std::string& problem, std::uint64_t maxPixels) {
    if (!data || size == 0 || size > std::numeric_limits<unsigned long>::max()) {
        problem = "no JPEG data";
        return false;
    }
    std::unique_ptr<void, DecompressorRelease> decompressor(tjInitDecompress());
    if (!decompressor) {
        problem = "the JPEG decoder could not be started";
        return false;
    }
    int width = 0, height = 0, subsampling = 0, colourspace = 0;
    if (tjDecompressHeader3(decompressor.get(), data, static_cast<unsigned long>(size), &width,
                            &height, &subsampling, &colourspace) != 0) {
        problem = tjGetErrorStr2(decompressor.get());
        return false;
    }
    if (!sizeAllowed(width, height, maxPixels, problem)) return false;
    // Decoded into a buffer of its own first, so that a failure leaves the picture as it was.
    std::vector<unsigned char> pixels(std::size_t(width) * std::size_t(height) * kChannels);
    if (tjDecompress2(decompressor.get(), data, static_cast<unsigned long>(size), pixels.data(),
                      width, 0, height, TJPF_RGB, TJFLAG_ACCURATEDCT) != 0) {
        problem = tjGetErrorStr2(decompressor.get());
        return false;
    }
    picture.width = width;
    picture.height = height;
    picture.pixels.swap(pixels);
    return true;
}

#endif

}  // namespace telvarra::platform
