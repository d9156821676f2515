#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include "support/LogCapture.h"
#include "support/TempDir.h"
#include "telvarra/CameraLogger.h"

using telvarra::test::LogCapture;
using telvarra::test::LogEntry;
using telvarra::test::readLines;
using telvarra::test::TempDir;
using telvarra::test::writeFile;

namespace {

CameraLogger& logger() { return CameraLogger::getInstance(); }

void writeNumberedLines(const std::string& path, int count) {
    std::string content;
    for (int i = 1; i <= count; ++i) content += "line " + std::to_string(i) + "\n";
    writeFile(path, content);
}

class LoggerTest : public ::testing::Test {
  protected:
    void TearDown() override {
        logger().setLogLevel(LogLevel::Info);
        telvarra::test::detachLogger();
    }
};

TEST_F(LoggerTest, WritesTimeLevelAndMessageToFileAndStandardOutput) {
    LogCapture capture;
    ::testing::internal::CaptureStdout();
    logger().log(LogLevel::Info, "Created camera: cam1");
    const std::string printed = ::testing::internal::GetCapturedStdout();

    const std::regex line(R"(\d{4}-\d{2}-\d{2} \d{2}:\d{2}:\d{2} \[INFO\] Created camera: cam1)");
    const auto lines = readLines(capture.path());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(std::regex_match(lines[0], line)) << lines[0];
    EXPECT_EQ(printed, lines[0] + "\n");
}

TEST_F(LoggerTest, ControlCharactersAreWrittenOutSoNoMessageStartsALine) {
    LogCapture capture;
    logger().log(LogLevel::Info,
                 "Creating camera: evil\n2026-01-01 00:00:00 [ERROR] forged\r\t\x01");
    const auto lines = readLines(capture.path());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NE(lines[0].find("evil\\n2026-01-01 00:00:00 [ERROR] forged\\r\\t\\x01"),
              std::string::npos)
        << lines[0];
}

TEST_F(LoggerTest, NamesEveryLevelAndLeavesUnknownLevelsEmpty) {
    LogCapture capture;
    logger().setLogLevel(LogLevel::Debug);
    logger().log(LogLevel::Debug, "d");
    logger().log(LogLevel::Info, std::string("i"));
    logger().log(LogLevel::Warning, "w");
    logger().log(LogLevel::Error, "e");
    logger().log(static_cast<LogLevel>(7), "seven");
    const std::vector<LogEntry> expected = {
        {"DEBUG", "d"}, {"INFO", "i"}, {"WARNING", "w"}, {"ERROR", "e"}, {"", "seven"}};
    EXPECT_EQ(capture.entries(), expected);
    EXPECT_NE(readLines(capture.path()).back().find(" [] seven"), std::string::npos);
}

TEST_F(LoggerTest, ALinkOrFifoInTheLogsPlaceIsNotAttached) {
    TempDir directory;
    const std::string target = directory.file("target.txt");
    telvarra::test::writeFile(target, "precious\n");
    const std::string link = directory.file("CameraLog.txt");
    std::error_code error;
    std::filesystem::create_symlink(target, link, error);
    if (!error) {
        logger().setLogFile(link);
        logger().log(LogLevel::Error, "not written through the link");
        EXPECT_EQ(telvarra::test::readFile(target), "precious\n");
    }
    const std::string fifo = directory.file("fifo.txt");
    if (std::system(("mkfifo '" + fifo + "' 2>/dev/null").c_str()) == 0) {
        logger().setLogFile(fifo);  // would block for ever if it were opened or read
        logger().log(LogLevel::Error, "not written into the FIFO");
    }
}

TEST_F(LoggerTest, AFloodOfOneLineIsCutToTenAndACount) {
    LogCapture capture;
    for (int i = 0; i < 10000; ++i) logger().log(LogLevel::Error, "Camera not streaming: cam");
    logger().log(LogLevel::Info, "Reconnecting");
    for (int i = 0; i < 3; ++i) logger().log(LogLevel::Info, "same three");
    std::vector<LogEntry> expected(10, {"ERROR", "Camera not streaming: cam"});
    expected.push_back({"ERROR", "Last message repeated 9990 more times"});
    expected.push_back({"INFO", "Reconnecting"});
    expected.insert(expected.end(), 3, {"INFO", "same three"});  // ordinary repeats stay
    EXPECT_EQ(capture.entries(), expected);
}

TEST_F(LoggerTest, AnOldLogOnOneEndlessLineIsTrimmedToo) {
    TempDir directory;
    const std::string path = directory.file("CameraLog.txt");
    writeFile(path, std::string(20 * 1024 * 1024, 'x') + "\nlast old line\n");
    logger().setLogFile(path);
    logger().log(LogLevel::Info, "new");
    telvarra::test::detachLogger();
    const auto lines = readLines(path);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], "last old line");
    EXPECT_LT(std::filesystem::file_size(path), 1024u);
}

TEST_F(LoggerTest, DropsLinesBelowTheMinimumLevel) {
    LogCapture capture;
    logger().setLogLevel(LogLevel::Warning);
    logger().log(LogLevel::Info, "dropped");
    logger().log(LogLevel::Warning, "kept warning");
    logger().log(LogLevel::Error, "kept error");
    logger().log(static_cast<LogLevel>(-1), "negative level dropped");
    const std::vector<LogEntry> expected = {{"WARNING", "kept warning"}, {"ERROR", "kept error"}};
    EXPECT_EQ(capture.entries(), expected);
}

TEST_F(LoggerTest, IsSilentWithoutAnAttachedFileEvenForErrors) {
    telvarra::test::detachLogger();
    ::testing::internal::CaptureStdout();
    logger().log(LogLevel::Error, "nobody hears this");
    logger().log(LogLevel::Error, static_cast<const char*>(nullptr));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST_F(LoggerTest, UnopenablePathLeavesTheLoggerSilentAndTheCallerUnharmed) {
    TempDir directory;
    writeFile(directory.file("plain-file"), "not a directory\n");
    // A path below a regular file cannot be created, whoever runs the test.
    const std::string impossible = directory.file("plain-file") + "/CameraLog.txt";
    {
        LogCapture capture;
        logger().log(LogLevel::Info, "before");
        logger().setLogFile(impossible);
        ::testing::internal::CaptureStdout();
        logger().log(LogLevel::Error, "after");
        EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
        EXPECT_EQ(capture.entries(), (std::vector<LogEntry>{{"INFO", "before"}}));
    }
    logger().setLogFile(directory.file("missing-dir") + "/x/CameraLog.txt");
    logger().log(LogLevel::Error, "still silent");
    EXPECT_FALSE(std::filesystem::exists(directory.path() / "missing-dir"));
}

TEST_F(LoggerTest, ReattachingTheSamePathKeepsEarlierLines) {
    LogCapture capture;
    logger().log(LogLevel::Info, "first");
    logger().setLogFile(capture.path());
    logger().log(LogLevel::Info, "second");
    const std::vector<LogEntry> expected = {{"INFO", "first"}, {"INFO", "second"}};
    EXPECT_EQ(capture.entries(), expected);
}

struct TrimCase {
    int linesBefore;
    int firstKept;
};

class LoggerTrimTest : public LoggerTest, public ::testing::WithParamInterface<TrimCase> {};

TEST_P(LoggerTrimTest, AttachKeepsTheNewerHalfOfAnOverlongFile) {
    TempDir directory;
    const std::string path = directory.file("CameraLog.txt");
    writeNumberedLines(path, GetParam().linesBefore);
    logger().setLogFile(path);
    telvarra::test::detachLogger();

    const auto lines = readLines(path);
    const int expectedCount = GetParam().linesBefore - GetParam().firstKept + 1;
    ASSERT_EQ(static_cast<int>(lines.size()), expectedCount);
    EXPECT_EQ(lines.front(), "line " + std::to_string(GetParam().firstKept));
    EXPECT_EQ(lines.back(), "line " + std::to_string(GetParam().linesBefore));
}

INSTANTIATE_TEST_SUITE_P(LineCounts, LoggerTrimTest,
                         ::testing::Values(TrimCase{5000, 1}, TrimCase{5001, 2501},
                                           TrimCase{10000, 5001}, TrimCase{3, 1}));

}  // namespace
