#include "api/Doctor.h"

#include <sstream>

#include "core/StandardDrivers.h"

namespace telvarra {

namespace {

// At most this many missing names are spelled out; the rest are counted.
constexpr std::size_t kNamesShown = 12;

std::string joinedNames(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size() && i < kNamesShown; ++i)
        text += (i ? ", " : "") + names[i];
    if (names.size() > kNamesShown)
        text += " and " + std::to_string(names.size() - kNamesShown) + " more";
    return text;
}

void describe(std::ostream& out, const MakeSdk& sdk) {
    const platform::SdkDiagnosis found = sdk.library.diagnose(sdk.readVersion);
    out << sdk.make << "\n  looks for  " << found.lookedFor << "\n";
    if (!found.loaderError.empty()) {
        out << "  found      no: " << found.loaderError << "\n  verdict    not available\n";
        return;
    }
    out << "  found      " << (found.foundAt.empty() ? found.lookedFor : found.foundAt) << "\n";
    if (!found.version.empty()) out << "  version    " << found.version << "\n";
    if (!found.missingRequired.empty()) {
        out << "  missing    " << found.missingRequired.size() << " required: "
            << joinedNames(found.missingRequired) << "\n"
            << "  verdict    not available: the library is another version than the driver needs\n";
        return;
    }
    if (!found.missingOptional.empty())
        out << "  lacking    " << found.missingOptional.size()
            << " optional: " << joinedNames(found.missingOptional) << "\n";
    out << "  verdict    loads with every required function\n";
}

}  // namespace

std::string doctorReport() {
    std::ostringstream out;
    for (const MakeSdk& sdk : standardSdks()) describe(out, sdk);
    return out.str();
}

}  // namespace telvarra
