// The telvarra program as a user runs it: built, started as a process of its own on the HikVision
// SDK simulator with a rig file written here, judged by what it prints, returns and saves.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "support/CurrentDirectory.h"
#include "support/TempDir.h"
#include "tools/Images.h"
#include "tools/RunProgram.h"

namespace telvarra::test {
namespace {

namespace fs = std::filesystem;
using sim::PixelFormat;

// A colour camera with a Bayer sensor, a mono camera of other proportions, one too small for the
// digital zoom, and one whose rows are no multiple of 4 bytes (BMP pads them).
constexpr char kRig[] =
    "hikvision id=TCOL01 user=\"Bench colour\" model=MV-TEST-C layer=usb3 size=800x600 "
    "format=bayer_rg8 seed=12345\n"
    "hikvision id=TMON01 model=MV-TEST-M size=700x500 format=mono8 seed=777\n"
    "hikvision id=TTINY1 size=200x150 format=mono8 seed=5\n"
    "hikvision id=TODD01 size=251x61 format=rgb8 seed=31\n";

struct RigCamera {
    PixelFormat sensor;
    std::uint32_t seed, width, height;
};
const std::map<std::string, RigCamera> kCameras = {
    {"TCOL01", {PixelFormat::BayerRG8, 12345, 800, 600}},
    {"TMON01", {PixelFormat::Mono8, 777, 700, 500}},
    {"TODD01", {PixelFormat::Rgb8, 31, 251, 61}},
};

Image frameAs(const std::string& id, PixelFormat delivered, std::uint32_t frame) {
    const RigCamera& camera = kCameras.at(id);
    return cameraFrame({id, "hikvision", camera.seed, camera.width, camera.height}, delivered,
                       frame);
}

Image plainFrame(const std::string& id, std::uint32_t frame) {
    return frameAs(id, kCameras.at(id).sensor, frame);
}

::testing::AssertionResult contains(const std::string& text, const std::string& part) {
    if (text.find(part) != std::string::npos) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "'" << part << "' is not in:\n" << text;
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> result;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) result.push_back(line);
    return result;
}

// A table row split at runs of two or more blanks: single blanks stay inside a cell.
std::vector<std::string> cells(const std::string& line) {
    static const std::regex separator(" {2,}");
    std::vector<std::string> result;
    std::string trimmed = line.substr(std::min(line.find_first_not_of(' '), line.size()));
    for (std::sregex_token_iterator it(trimmed.begin(), trimmed.end(), separator, -1), end;
         it != end; ++it) {
        result.push_back(*it);
    }
    return result;
}

// "label   value" lines of list's makes and info's fields.
std::map<std::string, std::string> fields(const std::string& text) {
    std::map<std::string, std::string> result;
    for (const std::string& line : lines(text)) {
        const std::vector<std::string> parts = cells(line);
        if (line.rfind("  ", 0) == 0 && parts.size() == 2) result[parts[0]] = parts[1];
    }
    return result;
}

std::set<std::string> filesIn(const fs::path& directory) {
    std::set<std::string> names;
    if (!fs::is_directory(directory)) return names;
    for (const auto& entry : fs::directory_iterator(directory)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

class CliTest : public ::testing::Test {
  protected:
    CliTest() { writeFile(m_rigFile, kRig); }

    ProgramRun telvarra(const std::vector<std::string>& arguments,
                        const std::string& program = TELVARRA_CLI) {
        ProgramRun run = runProgram(program, arguments, m_scratch.path());
        // Windows writes text with CR LF.
        for (std::string* text : {&run.out, &run.err}) {
            text->erase(std::remove(text->begin(), text->end(), '\r'), text->end());
        }
        return run;
    }

    fs::path output() const { return fs::current_path() / "out"; }

    void expectPicture(const std::string& name, const Image& expected, int channels = 0,
                       double tolerance = 0) {
        std::string problem;
        const Image saved = readPicture((output() / name).string(), problem, channels);
        ASSERT_TRUE(problem.empty()) << name << ": " << problem;
        EXPECT_EQ(difference(saved, expected, tolerance), "") << name;
    }

    InTempDirectory m_directory;  // configuration files the library writes land here
    TempDir m_scratch;
    std::string m_rigFile = m_scratch.file("cameras.rig");
    ScopedEnvironment m_rig{"TELVARRA_SIM_RIG", m_rigFile};
};

// ---- list and info

TEST_F(CliTest, ListShowsEveryCameraOfTheRigAndEveryMakesState) {
    const ProgramRun run = telvarra({"list"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_FALSE(contains(run.out, "[INFO]")) << "the library's log stays quiet";

    const std::vector<std::string> text = lines(run.out);
    ASSERT_GE(text.size(), 4u) << run.out;
    EXPECT_EQ(cells(text[0]), (std::vector<std::string>{"ID", "MAKE", "MODEL", "DISPLAY NAME"}));
    std::map<std::string, std::vector<std::string>> rows;
    for (std::size_t i = 1; i < text.size() && !text[i].empty(); ++i) {
        const std::vector<std::string> row = cells(text[i]);
        ASSERT_EQ(row.size(), 4u) << text[i];
        rows[row[0]] = row;
    }
    ASSERT_EQ(rows.size(), 4u) << run.out;
    EXPECT_EQ(rows["TCOL01"][1], "HikVision");
    EXPECT_EQ(rows["TCOL01"][3], "Bench colour");
    EXPECT_EQ(rows["TMON01"][3], "MV-TEST-M (TMON01)");

    const auto makes = fields(run.out);
    EXPECT_EQ(makes.size(), 5u) << run.out;
    EXPECT_EQ(makes.at("HikVision"), "ready, 4 cameras");
    EXPECT_EQ(makes.at("Canon"), "ready, 0 cameras");

    // What the doctor says of each make is the library's (the suite's doctor tests).
    const ProgramRun doctor = telvarra({"doctor"});
    EXPECT_EQ(doctor.exitCode, 0) << doctor.out << doctor.err;
    EXPECT_FALSE(contains(doctor.out, "not available"));
}

TEST_F(CliTest, InfoShowsTheRecordFormatsOneFrameAndEveryControl) {
    const ProgramRun run = telvarra({"info", "TCOL01"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const auto shown = fields(run.out);
    EXPECT_EQ(shown.at("make"), "HikVision");
    EXPECT_EQ(shown.at("serial number"), "TCOL01");
    EXPECT_EQ(shown.at("user name"), "Bench colour");
    EXPECT_EQ(shown.at("formats"), "mono8, rgb8, bgr8");
    EXPECT_EQ(shown.at("frame"), "800 x 600, 3 channels, format unknown");
    EXPECT_EQ(shown.at("hmirror"), "off");
    for (const char* control : {"rotate", "format", "vmirror", "zoom", "auto-exposure", "exposure",
                                "gain", "brightness"}) {
        EXPECT_EQ(shown.count(control), 1u) << control;
    }
}

// ---- grab

TEST_F(CliTest, GrabWritesCountPicturesOfSuccessiveFrames) {
    const ProgramRun run = telvarra({"grab", "TCOL01", "-n", "3", "-o", "out"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(filesIn(output()),
              (std::set<std::string>{"TCOL01-0001.png", "TCOL01-0002.png", "TCOL01-0003.png"}));
    for (std::uint32_t frame = 1; frame <= 3; ++frame) {
        expectPicture("TCOL01-000" + std::to_string(frame) + ".png", plainFrame("TCOL01", frame));
    }
    EXPECT_TRUE(contains(run.out, "TCOL01: 3 frames of 800 x 600 colour written to "));
    EXPECT_TRUE(contains(run.out, ", 0 failed, "));
    EXPECT_TRUE(contains(run.out,
                         "\n  TCOL01-0001.png .. TCOL01-0003.png show TCOL01 (HikVision) "
                         "frames 1 .. 3, upright, not mirrored or turned; the F mark in "
                         "the top-left corner\n"));
    EXPECT_EQ(run.err, "") << "no progress bar when standard error is a file";

    fs::remove_all(output());
    const ProgramRun unsaved = telvarra({"grab", "TMON01", "-n", "5", "-o", "out", "--no-save"});
    ASSERT_EQ(unsaved.exitCode, 0) << unsaved.err;
    EXPECT_FALSE(fs::exists(output()));
    EXPECT_TRUE(std::regex_match(
        unsaved.out, std::regex("TMON01: 5 frames of 700 x 500 grey grabbed, not saved, 0 failed, "
                                "[0-9]+\\.[0-9] frames/s\n")))
        << unsaved.out;
}

// The uncompressed formats, read back by a decoder of their own: grey and colour, a blue-first
// frame written in each format's own order, and BMP's rows padded to 4 bytes.
TEST_F(CliTest, GrabSavesPgmPpmAndBmpFilesOfTheFrames) {
    struct Case {
        const char* format;
        const char* camera;
        std::vector<std::string> options;
        const char* extension;
        PixelFormat delivered;
    };
    const Case cases[] = {
        {"pnm", "TMON01", {}, "pgm", PixelFormat::Mono8},
        {"pnm", "TCOL01", {"--format", "bgr8"}, "ppm", PixelFormat::Bgr8},
        {"bmp", "TODD01", {}, "bmp", PixelFormat::Rgb8},
        {"bmp", "TODD01", {"--format", "bgr8"}, "bmp", PixelFormat::Bgr8},
        {"bmp", "TODD01", {"--format", "mono8"}, "bmp", PixelFormat::Mono8},
    };
    for (const Case& c : cases) {
        std::vector<std::string> arguments = {"grab", c.camera,        "-n",    "2", "-o",
                                              "out",  "--save-format", c.format};
        arguments.insert(arguments.end(), c.options.begin(), c.options.end());
        const ProgramRun run = telvarra(arguments);
        const std::string first = std::string(c.camera) + "-0001." + c.extension;
        const std::string second = std::string(c.camera) + "-0002." + c.extension;
        SCOPED_TRACE(first);
        ASSERT_EQ(run.exitCode, 0) << run.err;
        EXPECT_EQ(filesIn(output()), (std::set<std::string>{first, second}));
        // A grey BMP is paletted: asked for one channel, the decoder gives the grey back.
        const int channels = c.delivered == PixelFormat::Mono8 ? 1 : 3;
        expectPicture(first, frameAs(c.camera, c.delivered, 1), channels);
        expectPicture(second, frameAs(c.camera, c.delivered, 2), channels);
        EXPECT_TRUE(contains(run.out, "  " + first + " .. " + second + " show "));
        fs::remove_all(output());
    }
}

TEST_F(CliTest, GrabReportsTheControlsAsTheCameraReadsThemBack) {
    const ProgramRun run = telvarra({"grab", "TCOL01", "-o", "out", "--auto-exposure", "off",
                                     "--exposure", "25", "--gain", "40", "--brightness", "60"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const std::regex applied(
        "TCOL01: auto-exposure off, exposure (\\d+), gain (\\d+), brightness (\\d+)\n");
    std::smatch values;
    ASSERT_TRUE(std::regex_search(run.out, values, applied)) << run.out;
    // Percent to device range and back truncates: one below is the same setting.
    EXPECT_NEAR(std::stoi(values[1]), 25, 1);
    EXPECT_NEAR(std::stoi(values[2]), 40, 1);
    EXPECT_NEAR(std::stoi(values[3]), 60, 1);
    expectPicture("TCOL01-0001.png", plainFrame("TCOL01", 1));

    const ProgramRun automatic = telvarra({"grab", "TMON01", "-o", "out", "--auto-exposure", "on"});
    ASSERT_EQ(automatic.exitCode, 0) << automatic.err;
    EXPECT_TRUE(contains(automatic.out, "TMON01: auto-exposure on\n"));
}

// The frame options reach the camera: one alone, a two-way mirror, and every option at once,
// against the pattern transformed on its own here, and the program says what the pictures show.
// The geometry itself is the suite's to check.
struct OptionCase {
    const char* name;
    const char* camera;
    std::vector<std::string> options;
    std::function<Image(std::uint32_t frame)> expected;
    const char* shown;
};

void PrintTo(const OptionCase& option, std::ostream* out) { *out << option.name; }

class GrabOptionTest : public CliTest, public ::testing::WithParamInterface<OptionCase> {};

TEST_P(GrabOptionTest, ChangesTheSavedPicturesAsTheOptionSays) {
    const OptionCase& option = GetParam();
    std::vector<std::string> arguments = {"grab", option.camera, "-n", "2", "-o", "out"};
    arguments.insert(arguments.end(), option.options.begin(), option.options.end());
    const ProgramRun run = telvarra(arguments);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    for (std::uint32_t frame = 1; frame <= 2; ++frame) {
        expectPicture(std::string(option.camera) + "-000" + std::to_string(frame) + ".png",
                      option.expected(frame));
    }
    EXPECT_TRUE(contains(run.out, std::string(" show ") + option.camera +
                                      " (HikVision) frames 1 .. 2, " + option.shown + "\n"));
}

const OptionCase kOptionCases[] = {
    {"FormatMono8",
     "TCOL01",
     {"--format", "mono8"},
     [](std::uint32_t f) { return frameAs("TCOL01", PixelFormat::Mono8, f); },
     "upright, not mirrored or turned; the F mark in the top-left corner"},
    {"MirrorHV",
     "TMON01",
     {"--mirror", "hv"},
     [](std::uint32_t f) { return mirroredTopBottom(mirroredLeftRight(plainFrame("TMON01", f))); },
     "mirrored left-right and top-bottom; the F mark in the bottom-right corner"},
    // Mirror, then turn, then zoom into the turned frame.
    {"MirrorRotateZoomFormat",
     "TCOL01",
     {"--zoom", "2", "--rotate", "1", "--mirror", "h", "--format", "bgr8"},
     [](std::uint32_t f) {
         return zoomed(
             turnedClockwise(mirroredLeftRight(frameAs("TCOL01", PixelFormat::Bgr8, f)), 1), 2);
     },
     "mirrored left-right, turned a quarter clockwise, zoomed in two steps to the centre"},
};

INSTANTIATE_TEST_SUITE_P(Options, GrabOptionTest, ::testing::ValuesIn(kOptionCases),
                         [](const auto& info) { return std::string(info.param.name); });

// ---- get and set

TEST_F(CliTest, GetPrintsJustTheValueAndSetPrintsWhatTheCameraTook) {
    const auto value = [&](const std::vector<std::string>& arguments) {
        const ProgramRun run = telvarra(arguments);
        EXPECT_EQ(run.exitCode, 0) << run.err;
        return run.out;
    };
    EXPECT_EQ(value({"get", "TCOL01", "rotate"}), "0\n");
    EXPECT_EQ(value({"get", "TCOL01", "format"}), "unknown\n") << "a Bayer sensor's own format";
    EXPECT_EQ(value({"get", "TMON01", "format", "--type", "hikvision"}), "mono8\n");
    EXPECT_EQ(value({"set", "TMON01", "rotate", "3"}), "rotate 3\n");
    EXPECT_EQ(value({"set", "TCOL01", "format", "bgr8"}), "format bgr8\n");
    EXPECT_TRUE(
        std::regex_match(value({"set", "TCOL01", "gain", "40"}), std::regex("gain (39|40)\n")));
    EXPECT_FALSE(value({"get", "TCOL01", "ExposureTarget"}).empty()) << "a text parameter";
    EXPECT_EQ(value({"set", "TCOL01", "ExposureTarget", "12"}), "ExposureTarget 12\n");

    const ProgramRun mirror = telvarra({"set", "TMON01", "hmirror", "on"});
    EXPECT_EQ(mirror.out, "hmirror on\n");
    EXPECT_TRUE(contains(mirror.err, "lasts only while a program has the camera open"));
}

// ---- what goes wrong

TEST_F(CliTest, BadArgumentsExitWithTwoAndTouchNoCamera) {
    const std::vector<std::vector<std::string>> cases = {
        {},
        {"snap", "TCOL01"},
        {"grab"},
        {"grab", "TCOL01", "-n", "many"},
        {"grab", "TCOL01", "--rotate", "4"},
        {"grab", "TCOL01", "--zoom", "3"},
        {"grab", "TCOL01", "--gain", "101"},
        {"grab", "TCOL01", "--mirror", "x"},
        {"grab", "TCOL01", "--format", "yuv422"},
        {"grab", "TCOL01", "--save-format", "tiff"},
        {"grab", "TCOL01", "--frobnicate"},
        {"info", "TCOL01", "--type", "nikon"},
        {"get", "TCOL01"},
        {"get", "TCOL01", "zoom"},
        {"set", "TCOL01", "gain", "abc"},
        {"set", "TCOL01", "hmirror", "sideways"},
        {"set", "TCOL01", "format", "bayer_rg8"},
    };
    for (const auto& arguments : cases) {
        std::string line = "telvarra";
        for (const auto& argument : arguments) line += " " + argument;
        std::vector<std::string> withOutput = arguments;
        withOutput.insert(withOutput.end(), {"-o", "out"});
        const ProgramRun run =
            telvarra(arguments.size() > 1 && arguments[0] == "grab" ? withOutput : arguments);
        EXPECT_EQ(run.exitCode, 2) << line << "\n" << run.out << run.err;
        EXPECT_TRUE(contains(run.err, "telvarra: error: ")) << line;
        EXPECT_EQ(run.out, "") << line;
    }
    EXPECT_FALSE(fs::exists(output()));
}

TEST_F(CliTest, UnknownIdentifierExitsWithThree) {
    for (const char* command : {"info", "grab", "get"}) {
        std::vector<std::string> arguments = {command, "NOSUCH"};
        if (std::string(command) == "get") arguments.push_back("gain");
        const ProgramRun run = telvarra(arguments);
        EXPECT_EQ(run.exitCode, 3) << command;
        EXPECT_TRUE(contains(run.err, "no camera with identifier 'NOSUCH'")) << command;
    }
}

// A copy of the program and library in a folder of their own, with the library search path
// naming only that folder: the simulator is nowhere to be found, as on a machine without the SDK.
TEST_F(CliTest, MissingSdkIsReportedWithFourAndNeverCrashes) {
    const std::string folder = fs::path(TELVARRA_CLI_WITHOUT_SDK).parent_path().string();
    ScopedEnvironment searchPath(TELVARRA_LIBRARY_SEARCH_VARIABLE, folder);

    const ProgramRun list = telvarra({"list"}, TELVARRA_CLI_WITHOUT_SDK);
    EXPECT_EQ(list.exitCode, 4) << list.out << list.err;
    EXPECT_EQ(fields(list.out).at("HikVision"),
              "not available: its SDK could not be loaded or started");
    EXPECT_TRUE(contains(list.out, "No cameras found."));

    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"grab", "TCOL01", "-o", "out"},
          std::vector<std::string>{"info", "TCOL01", "--type", "hikvision"}}) {
        const ProgramRun run = telvarra(arguments, TELVARRA_CLI_WITHOUT_SDK);
        EXPECT_EQ(run.exitCode, 4) << arguments[0];
        EXPECT_TRUE(contains(run.err, "HikVision: its SDK could not be loaded or started"));
    }
    EXPECT_FALSE(fs::exists(output()));

    // The doctor says what was looked for and the system's own reason it was not loaded.
    const ProgramRun doctor = telvarra({"doctor"}, TELVARRA_CLI_WITHOUT_SDK);
    EXPECT_EQ(doctor.exitCode, 4) << doctor.out << doctor.err;
    EXPECT_TRUE(contains(doctor.out, "HikVision\n  looks for  "));
    EXPECT_TRUE(contains(doctor.out, "  found      no: "));
    const std::string reason = TELVARRA_LIBRARY_SEARCH_VARIABLE == std::string("PATH")
                                   ? "LoadLibraryW failed with error 126: "
                                   : "cannot open shared object file";
    EXPECT_TRUE(contains(doctor.out, reason));
}

TEST_F(CliTest, SettingsTheCameraRefusesExitWithOneAndSaveNothing) {
    const ProgramRun format = telvarra({"grab", "TMON01", "--format", "rgb8", "-o", "out"});
    EXPECT_EQ(format.exitCode, 1);
    EXPECT_TRUE(contains(format.err, "refused format rgb8 (it offers: mono8)"));

    const ProgramRun zoom = telvarra({"grab", "TTINY1", "--zoom", "1", "-o", "out"});
    EXPECT_EQ(zoom.exitCode, 1);
    EXPECT_TRUE(contains(zoom.err, "refused zoom 1"));
    EXPECT_TRUE(filesIn(output()).empty());
}

// ---- Canon bodies: live view through grab, a still through still

TEST_F(CliTest, ACanonBodyGrabsItsLiveViewAndTakesAStillOfTwiceItsSize) {
    writeFile(m_rigFile, std::string(kRig) + "canon id=TEOS01 size=320x200 seed=9\n");
    const sim::PictureCamera body{"TEOS01", "canon", 9, 320, 200};
    // Live view and stills come as JPEG files.
    constexpr double kJpegTolerance = 4;

    const ProgramRun list = telvarra({"list"});
    ASSERT_EQ(list.exitCode, 0) << list.err;
    EXPECT_EQ(cells(lines(list.out).at(0)).at(0), "ID") << "nothing printed before the table";
    EXPECT_EQ(fields(list.out).at("Canon"), "ready, 1 camera");

    const ProgramRun grab = telvarra({"grab", "TEOS01", "-n", "2", "-o", "out"});
    ASSERT_EQ(grab.exitCode, 0) << grab.out << grab.err;
    EXPECT_FALSE(contains(grab.out, "Camera Index"));
    for (std::uint32_t frame = 1; frame <= 2; ++frame) {
        expectPicture("TEOS01-000" + std::to_string(frame) + ".png",
                      cameraFrame(body, PixelFormat::Rgb8, frame), 0, kJpegTolerance);
    }

    const ProgramRun still = telvarra({"still", "TEOS01", "-o", "out"});
    ASSERT_EQ(still.exitCode, 0) << still.out << still.err;
    EXPECT_TRUE(contains(still.out, "TEOS01-still.png: still of 640 x 400 colour written to"));
    // The first frame of the still's own session.
    expectPicture("TEOS01-still.png",
                  cameraFrame({"TEOS01", "canon", 9, 640, 400}, PixelFormat::Rgb8, 1), 0,
                  kJpegTolerance);

    EXPECT_EQ(telvarra({"still", "TCOL01", "-o", "out"}).exitCode, 2) << "not a Canon body";
}

}  // namespace
}  // namespace telvarra::test
