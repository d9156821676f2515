// What the library finds of each make's SDK, through the complete C interface: on the simulators
// every make loads, a runtime lacking functions is named with what it lacks (the lookup seam
// hides them, as an older vendor runtime would), and the text is cut to any buffer.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "drivers/hikvision/HikVisionBinding.h"
#include "telvarra/TelvarraApi.h"

namespace telvarra::test {
namespace {

std::string doctor() {
    const int length = telvarra_doctor(nullptr, 0);
    EXPECT_GT(length, 0) << telvarra_last_error();
    std::vector<char> text(static_cast<std::size_t>(length) + 1);
    EXPECT_EQ(telvarra_doctor(text.data(), static_cast<int>(text.size())), length);
    return text.data();
}

// The block of one make: from its name to the next make's.
std::string blockOf(const std::string& report, const std::string& make) {
    const std::size_t start = report.find(make + "\n  looks for");
    if (start == std::string::npos) return "(no block for " + make + ")";
    const std::size_t end = report.find("verdict", start);
    return report.substr(start, report.find('\n', end) - start);
}

TEST(DoctorTest, EveryMakeOfTheSimulatorsLoadsAndHikVisionSaysItsVersion) {
    const std::string report = doctor();
    for (const char* make : {"MindVision", "HikVision", "Dvp", "DaHeng", "Canon"}) {
        EXPECT_NE(blockOf(report, make).find("verdict    loads with every required function"),
                  std::string::npos)
            << report;
    }
    EXPECT_NE(blockOf(report, "HikVision").find("version    4.5.0.3"), std::string::npos);
    EXPECT_NE(blockOf(report, "Canon").find("looks for  "), std::string::npos);

    char cut[8] = {'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x'};
    EXPECT_EQ(telvarra_doctor(cut, sizeof cut), static_cast<int>(report.size()));
    EXPECT_EQ(std::string(cut), report.substr(0, 7));
    EXPECT_EQ(telvarra_doctor(nullptr, 5), -1);
    EXPECT_NE(std::string(telvarra_last_error()).find("no buffer"), std::string::npos);
}

TEST(DoctorTest, AnOlderRuntimeIsNamedWithTheFunctionsItLacks) {
    const std::vector<std::string> lacking = {"MV_CC_Initialize", "MV_CC_Finalize",
                                              "MV_CC_ConvertPixelTypeEx"};
    hikvision::hikVisionBinding().setSymbolLookup(
        [&](const platform::DynamicLibrary& library, const char* name) -> void* {
            for (const std::string& hidden : lacking)
                if (hidden == name) return nullptr;
            return library.symbol(name);
        });
    const std::string block = blockOf(doctor(), "HikVision");
    hikvision::hikVisionBinding().setSymbolLookup({});
    EXPECT_NE(block.find("missing    3 required: MV_CC_Initialize, MV_CC_Finalize, "
                         "MV_CC_ConvertPixelTypeEx"),
              std::string::npos)
        << block;
    EXPECT_NE(block.find("verdict    not available"), std::string::npos) << block;
    EXPECT_EQ(block.find("  version  "), std::string::npos) << "no call into an incomplete runtime";
}

}  // namespace
}  // namespace telvarra::test
