#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "support/LogCapture.h"
#include "support/TempDir.h"
#include "telvarra/CameraConfig.h"

using telvarra::test::LogCapture;
using telvarra::test::readFile;
using telvarra::test::readLines;
using telvarra::test::TempDir;
using telvarra::test::writeFile;

namespace {

// The caller's side of getValue/getConfigFile: a 255-byte buffer with a guard zone behind it
// that must never be written.
struct CallerBuffer {
    static constexpr std::size_t kSize = 255;
    static constexpr char kUntouched = '\x5a';
    char bytes[kSize + 64];
    char* pointer = bytes;

    CallerBuffer() { std::memset(bytes, kUntouched, sizeof bytes); }
    std::string text() const { return std::string(bytes); }
    bool untouched() const {
        for (char byte : bytes) {
            if (byte != kUntouched) return false;
        }
        return true;
    }
    bool guardIntact() const {
        for (std::size_t i = kSize; i < sizeof bytes; ++i) {
            if (bytes[i] != kUntouched) return false;
        }
        return true;
    }
};

std::string valueOf(const CameraConfig& config, const char* key) {
    CallerBuffer buffer;
    return config.getValue(key, &buffer.pointer) ? buffer.text() : std::string("<absent>");
}

class ConfigTest : public ::testing::Test {
  protected:
    TempDir directory;
    LogCapture log;
};

TEST_F(ConfigTest, GrammarKeepsSpacesSplitsAtFirstEqualsAndSkipsCommentsAndBlankLines) {
    const std::string path = directory.file("grammar.cfg");
    writeFile(path,
              "# comment\n\na=first\na=1=2\n b = x \nno equals here\n  # not a comment=yes\n=v\n");
    CameraConfig config;
    ASSERT_TRUE(config.loadConfig(path.c_str()));
    EXPECT_EQ(valueOf(config, "a"), "1=2");
    EXPECT_EQ(valueOf(config, " b "), " x ");
    EXPECT_EQ(valueOf(config, "  # not a comment"), "yes");
    EXPECT_EQ(valueOf(config, ""), "v");
    EXPECT_FALSE(config.hasKey("# comment"));
    EXPECT_FALSE(config.hasKey("no equals here"));
    EXPECT_TRUE(log.contains("INFO", "Loaded config from: " + path));
}

TEST_F(ConfigTest, WindowsLineEndingsLoadLikeUnixOnes) {
    const std::string path = directory.file("crlf.cfg");
    writeFile(path, "# written on Windows\r\nGain=40\r\n\r\nName=cam 1\r\n");
    CameraConfig config(path.c_str());
    EXPECT_EQ(valueOf(config, "Gain"), "40");
    EXPECT_EQ(valueOf(config, "Name"), "cam 1");
    EXPECT_FALSE(config.hasKey(""));
}

TEST_F(ConfigTest, FailedLoadKeepsValuesAndLogsTheMissingFile) {
    CameraConfig config;
    config.setValue("kept", "yes");
    const std::string missing = directory.file("missing.cfg");
    EXPECT_FALSE(config.loadConfig(missing.c_str()));
    EXPECT_EQ(valueOf(config, "kept"), "yes");
    EXPECT_TRUE(log.contains("ERROR", "Failed to open config file: " + missing));

    const std::string empty = directory.file("empty.cfg");
    writeFile(empty, "");
    EXPECT_TRUE(config.loadConfig(empty.c_str()));
    EXPECT_FALSE(config.hasKey("kept"));
}

TEST_F(ConfigTest, SaveWritesKeyOrderAndRoundTrips) {
    const std::string path = directory.file("round.cfg");
    CameraConfig written;
    written.setValue("b", "2");
    written.setValue("a", " spaced = value ");
    written.setValue("B", "upper sorts first");
    ASSERT_TRUE(written.saveConfig(path.c_str()));
    EXPECT_EQ(readLines(path),
              (std::vector<std::string>{"B=upper sorts first", "a= spaced = value ", "b=2"}));
    EXPECT_TRUE(log.contains("INFO", "Saved config to: " + path));

    CameraConfig read(path.c_str());
    EXPECT_EQ(valueOf(read, "a"), " spaced = value ");
    EXPECT_EQ(valueOf(read, "b"), "2");
    EXPECT_EQ(valueOf(read, "B"), "upper sorts first");
}

TEST_F(ConfigTest, AValueEndingInACarriageReturnKeepsItThroughASaveAndALoad) {
    // Found by fuzzing: the saved line's own CR passed for half of a CR LF and was lost.
    const std::string path = directory.file("cr.cfg");
    writeFile(path, "k=v\r\r");  // no line end: read alike on every platform
    CameraConfig loaded(path.c_str());
    ASSERT_EQ(valueOf(loaded, "k"), "v\r");
    ASSERT_TRUE(loaded.saveConfig(path.c_str()));
    CameraConfig reloaded(path.c_str());
    EXPECT_EQ(valueOf(reloaded, "k"), "v\r");
}

TEST_F(ConfigTest, EmptyPathUsesTheStoredOneAndUnusablePathsFail) {
    const std::string path = directory.file("stored.cfg");
    writeFile(path, "x=1\n");
    CameraConfig config;
    ASSERT_TRUE(config.loadConfig(path.c_str()));
    config.setValue("y", "2");
    EXPECT_TRUE(config.saveConfig(""));
    EXPECT_EQ(readLines(path), (std::vector<std::string>{"x=1", "y=2"}));

    CameraConfig unbound;
    EXPECT_FALSE(unbound.saveConfig(""));
    EXPECT_FALSE(unbound.loadConfig(nullptr));
    const auto entries = log.entries();
    EXPECT_EQ(std::count(entries.begin(), entries.end(),
                         telvarra::test::LogEntry{"ERROR", "Config file path is empty"}),
              2);

    const std::string impossible = directory.path().string();  // a directory, not a file
    EXPECT_FALSE(unbound.saveConfig(impossible.c_str()));
    EXPECT_TRUE(log.contains("ERROR", "Failed to open config file for writing: " + impossible));
}

TEST_F(ConfigTest, GetValueOfMissingKeyOrIntoNullBufferLeavesEverythingUntouched) {
    CameraConfig config;
    config.setValue("k", "v");
    CallerBuffer buffer;
    EXPECT_FALSE(config.getValue("missing", &buffer.pointer));
    EXPECT_TRUE(buffer.untouched());
    EXPECT_FALSE(config.getValue("k", nullptr));
    char* nullBuffer = nullptr;
    EXPECT_FALSE(config.getValue("k", &nullBuffer));
    EXPECT_FALSE(config.getValue(nullptr, &buffer.pointer));
    EXPECT_TRUE(buffer.untouched());
}

TEST_F(ConfigTest, ValuesAndPathsOf255CharactersAreRefusedWithoutWritingPastTheBuffer) {
    CameraConfig config;
    const std::string longest(254, 'v');
    const std::string tooLong(255, 'w');
    config.setValue("fits", longest.c_str());
    config.setValue("too long", tooLong.c_str());
    config.setValue("far too long", std::string(10000, 'x').c_str());

    CallerBuffer fits;
    EXPECT_TRUE(config.getValue("fits", &fits.pointer));
    EXPECT_EQ(fits.text(), longest);
    EXPECT_TRUE(fits.guardIntact());

    for (const char* key : {"too long", "far too long"}) {
        CallerBuffer refused;
        EXPECT_FALSE(config.getValue(key, &refused.pointer));
        EXPECT_TRUE(refused.untouched());
    }
    EXPECT_TRUE(log.contains("ERROR", "Config value too long for key: too long"));

    const std::string longPath = directory.file(std::string(300, 'p'));
    CameraConfig longBound;
    longBound.saveConfig(longPath.c_str());
    CallerBuffer path;
    EXPECT_FALSE(longBound.getConfigFile(&path.pointer));
    EXPECT_TRUE(path.untouched());
}

TEST_F(ConfigTest, GetConfigFileCopiesTheBoundPath) {
    CameraConfig unbound;
    CallerBuffer buffer;
    EXPECT_FALSE(unbound.getConfigFile(&buffer.pointer));
    EXPECT_TRUE(buffer.untouched());

    const std::string path = directory.file("bound.cfg");
    CameraConfig bound(path.c_str());  // missing file: empty store, still bound
    EXPECT_TRUE(log.contains("ERROR", "Failed to open config file: " + path));
    EXPECT_TRUE(bound.getConfigFile(&buffer.pointer));
    EXPECT_EQ(buffer.text(), path);
}

TEST_F(ConfigTest, CopiesAreDeepAndSelfAssignmentKeepsEverything) {
    CameraConfig original;
    original.setValue("k", "1");
    CameraConfig copy(original);
    CameraConfig assigned;
    assigned = original;
    original.setValue("k", "changed");
    EXPECT_EQ(valueOf(copy, "k"), "1");
    EXPECT_EQ(valueOf(assigned, "k"), "1");

    CameraConfig& self = assigned;
    assigned = self;
    EXPECT_EQ(valueOf(assigned, "k"), "1");
}

TEST_F(ConfigTest, NullsAndLineBreaksInKeysOrValuesAreRefusedSoNoLineIsForged) {
    CameraConfig config;
    config.setValue(nullptr, "v");
    config.setValue("k", nullptr);
    EXPECT_FALSE(config.hasKey("k"));
    EXPECT_FALSE(config.hasKey(nullptr));
    EXPECT_TRUE(log.contains("ERROR", "Config key or value is null"));
    config.setValue("Gain", "5");
    config.setValue("Gain", "0.5\nsetCameraRotate=3");
    config.setValue("a\rb", "1");
    EXPECT_FALSE(config.hasKey("a\rb"));
    EXPECT_TRUE(log.contains("ERROR", "Config key or value holds a line break: Gain"));
    const std::string path = directory.file("forged.cfg");
    ASSERT_TRUE(config.saveConfig(path.c_str()));
    CameraConfig reloaded;
    ASSERT_TRUE(reloaded.loadConfig(path.c_str()));
    EXPECT_FALSE(reloaded.hasKey("setCameraRotate"));
    EXPECT_EQ(valueOf(reloaded, "Gain"), "5");
}

TEST_F(ConfigTest, OnlyPlainFilesOfAtMostOneMebibyteAreReadOrWritten) {
    const std::string big = directory.file("big.cfg");
    writeFile(big, "Gain=1\n" + std::string(1024 * 1024, '#'));
    CameraConfig config;
    EXPECT_FALSE(config.loadConfig(big.c_str()));
    EXPECT_TRUE(log.contains("ERROR", "Config file too large: " + big));

    // A link's target is neither read nor rewritten (where the system lets us make one).
    const std::string target = directory.file("target.txt");
    const std::string link = directory.file("camera_link.cfg");
    writeFile(target, "precious\n");
    std::error_code error;
    std::filesystem::create_symlink(target, link, error);
    if (!error) {
        config.setValue("Gain", "2");
        EXPECT_FALSE(config.loadConfig(link.c_str()));
        EXPECT_FALSE(config.saveConfig(link.c_str()));
        EXPECT_TRUE(log.contains("ERROR", "Config file is not a plain file: " + link));
        EXPECT_EQ(readFile(target), "precious\n");
    }
    // A FIFO would block the open for ever (where the system has them).
    const std::string fifo = directory.file("camera_fifo.cfg");
    if (std::system(("mkfifo '" + fifo + "' 2>/dev/null").c_str()) == 0) {
        EXPECT_FALSE(config.loadConfig(fifo.c_str()));
        EXPECT_FALSE(config.saveConfig(fifo.c_str()));
    }
}

}  // namespace
