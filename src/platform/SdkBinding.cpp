#include "platform/SdkBinding.h"

#include <utility>

namespace telvarra::platform {

namespace {

void* realLookup(const DynamicLibrary& library, const char* name) { return library.symbol(name); }

}  // namespace

SdkLibrary::SdkLibrary(std::string fileName)
    : m_fileName(std::move(fileName)), m_lookup(realLookup) {}

bool SdkLibrary::load() { return load(m_fileName); }

bool SdkLibrary::load(const std::string& fileName) {
    if (!m_library.open(fileName)) return false;
    return bindAll();
}

void SdkLibrary::unload() { m_library.close(); }

void SdkLibrary::setSymbolLookup(SymbolLookup lookup) {
    m_lookup = lookup ? std::move(lookup) : SymbolLookup(realLookup);
}

}  // namespace telvarra::platform
