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

SdkDiagnosis SdkLibrary::diagnose(const VersionReader& readVersion) const {
    SdkDiagnosis diagnosis;
    diagnosis.lookedFor = m_fileName;
    DynamicLibrary library;
    if (!library.open(m_fileName)) {
        diagnosis.loaderError = library.lastError().empty() ? "not found" : library.lastError();
        return diagnosis;
    }
    diagnosis.foundAt = library.path();
    forEachName([&](const char* name, Need need) {
        if (m_lookup(library, name)) return;
        (need == Need::Required ? diagnosis.missingRequired : diagnosis.missingOptional)
            .push_back(name);
    });
    if (readVersion && diagnosis.missingRequired.empty())
        diagnosis.version = readVersion([&](const char* name) { return m_lookup(library, name); });
    return diagnosis;
}

void SdkLibrary::setSymbolLookup(SymbolLookup lookup) {
    m_lookup = lookup ? std::move(lookup) : SymbolLookup(realLookup);
}

}  // namespace telvarra::platform
