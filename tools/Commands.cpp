#include "Commands.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iomanip>
#include <optional>
#include <system_error>
#include <thread>

#include "CliError.h"
#include "FrameSaver.h"
#include "ImageFiles.h"
#include "Progress.h"
#include "Session.h"
#include "Terminal.h"

namespace telvarra::cli {

namespace {

namespace fs = std::filesystem;

// A grab gives up when this many frames in a row fail: the camera has stopped delivering.
constexpr int kFailuresInARowToGiveUp = 5;
constexpr int kLabelWidth = 16;

void printRow(std::ostream& out, const std::vector<std::string>& cells,
              const std::vector<std::size_t>& widths) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        line += cells[i];
        if (i + 1 < cells.size()) line += std::string(widths[i] - cells[i].size() + 2, ' ');
    }
    out << line << '\n';
}

void printField(std::ostream& out, const std::string& label, const std::string& value) {
    out << "  " << std::left << std::setw(kLabelWidth) << label << value << '\n';
}

std::string sizeText(int width, int height) {
    return std::to_string(width) + " x " + std::to_string(height);
}

std::string makeName(Ruvo_CameraType type) {
    const Make* make = makeOfType(type);
    return make ? make->name : "type " + std::to_string(static_cast<int>(type));
}

std::string formatsText(const _RUVO_IMAGE_FORMAT_LIST& formats) {
    std::string text;
    const uint32_t count = std::min<uint32_t>(formats.count, RUVO_MAX_IMAGE_FORMATS);
    for (uint32_t i = 0; i < count; ++i) {
        text += (text.empty() ? "" : ", ") + formatName(formats.formats[i]);
    }
    return text.empty() ? "none listed" : text;
}

const Control& requireControlValue(const std::string& name, const std::string& value, int& parsed) {
    const Control* control = findControl(name);
    const std::optional<int> number = parseValue(*control, value);
    if (!number) {
        throw CliError(kExitUsage,
                       name + " takes " + valuesAccepted(*control) + ", not '" + value + "'");
    }
    parsed = *number;
    return *control;
}

// Writes the setting, then reads it back where the library can: what the camera took.
std::string applySetting(Session& session, const Control& control, int value) {
    if (!control.write(session.library(), session.id(), value)) {
        std::string message = std::string("camera '") + session.id() + "' refused " + control.name +
                              " " + valueText(control, value);
        if (control.kind == ValueKind::Format) {
            message += " (it offers: " +
                       formatsText(session.library().getSupportedImageFormats(session.id())) + ")";
        }
        throw CliError(kExitFailed, message);
    }
    int current = value;
    if (control.read && !control.read(session.library(), session.id(), current)) {
        throw CliError(kExitFailed, std::string("camera '") + session.id() + "' did not report " +
                                        control.name + " back");
    }
    return valueText(control, current);
}

// Controls that live in the camera object rather than the device end with the program.
bool lastsForSessionOnly(const Control& control) {
    const std::string name = control.name;
    return name == "hmirror" || name == "vmirror" || name == "rotate" || name == "zoom";
}

std::string fixedRate(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", value);
    return text;
}

// What a grab's mirror, turn and zoom settings do to the picture, in words, with the corner the
// virtual cameras' "F" mark ends up in, so that a person can check a saved picture at a glance.
std::string describeGeometry(const GrabOptions& grab, const Make* make) {
    bool leftRight = false;
    bool topBottom = false;
    int turns = 0;
    int zoom = 0;
    for (const auto& [control, value] : grab.settings) {
        const std::string name = control->name;
        if (name == "hmirror") leftRight = value != 0;
        if (name == "vmirror") topBottom = value != 0;
        if (name == "rotate") turns = value % 4;
        if (name == "zoom") zoom = value;
    }
    const bool anticlockwise = make && make->turnsAnticlockwise;
    const std::string direction = anticlockwise ? " anticlockwise" : " clockwise";

    std::vector<std::string> parts;
    if (leftRight && topBottom)
        parts.push_back("mirrored left-right and top-bottom");
    else if (leftRight)
        parts.push_back("mirrored left-right");
    else if (topBottom)
        parts.push_back("mirrored top-bottom");
    if (turns == 1) parts.push_back("turned a quarter" + direction);
    if (turns == 2) parts.push_back("turned half round");
    if (turns == 3) parts.push_back("turned three quarters" + direction);
    if (zoom > 0) {
        parts.push_back("zoomed in " + std::string(zoom == 1 ? "one step" : "two steps") +
                        " to the centre");
    }
    std::string text;
    for (const std::string& part : parts) text += (text.empty() ? "" : ", ") + part;
    if (text.empty()) text = "upright, not mirrored or turned";
    // The zoom window is the centre: the mark is not in it.
    if (zoom > 0) return text;

    // The mark's corner, 0 left or top and 1 right or bottom, through the mirrors and then the
    // turn, in the order the library applies them.
    int x = leftRight ? 1 : 0;
    int y = topBottom ? 1 : 0;
    for (int turn = 0; turn < turns; ++turn) {
        const int oldX = x;
        if (anticlockwise) {
            x = y;
            y = 1 - oldX;
        } else {
            x = 1 - y;
            y = oldX;
        }
    }
    return text + "; the F mark in the " + (y ? "bottom" : "top") + "-" + (x ? "right" : "left") +
           " corner";
}

// Consecutive pictures of consecutive frames, described on one line.
struct PictureRun {
    int firstIndex = 0;
    int lastIndex = 0;
    std::string firstName;
    std::string lastName;
    int32_t firstFrame = 0;
    int32_t lastFrame = 0;
};

}  // namespace

int runList(const CommonOptions& common, std::ostream& out) {
    Session session(common.verbosity);
    const std::vector<MakeStatus>& makes = session.startMakes(common.type);

    const std::vector<std::string> header = {"ID", "MAKE", "MODEL", "DISPLAY NAME"};
    std::vector<std::vector<std::string>> rows;
    std::vector<std::size_t> cameraCounts;
    for (const MakeStatus& status : makes) {
        std::size_t count = 0;
        if (status.state == MakeState::Ready) {
            for (const DeviceInfo& device : session.cameras(status.make->type)) {
                rows.push_back({recordText(device.cameraId), status.make->name,
                                recordText(device.modelName), recordText(device.displayName)});
                ++count;
            }
        }
        cameraCounts.push_back(count);
    }

    if (rows.empty()) {
        out << "No cameras found.\n";
    } else {
        std::vector<std::size_t> widths(header.size());
        for (std::size_t i = 0; i < header.size(); ++i) {
            widths[i] = header[i].size();
            for (const auto& row : rows) widths[i] = std::max(widths[i], row[i].size());
        }
        printRow(out, header, widths);
        for (const auto& row : rows) printRow(out, row, widths);
    }

    out << "\nMakes:\n";
    bool anyReady = false;
    for (std::size_t i = 0; i < makes.size(); ++i) {
        const MakeStatus& status = makes[i];
        std::string state;
        if (status.state == MakeState::Ready) {
            anyReady = true;
            state = "ready, " + std::to_string(cameraCounts[i]) +
                    (cameraCounts[i] == 1 ? " camera" : " cameras");
        } else {
            state = "not available: " + describe(status.state);
        }
        printField(out, status.make->name, state);
    }
    out << std::flush;
    return anyReady ? kExitOk : kExitMakeUnavailable;
}

int runDoctor(std::ostream& out) {
    const int length = telvarra_doctor(nullptr, 0);
    if (length < 0) throw CliError(kExitFailed, telvarra_last_error());
    std::string report(static_cast<std::size_t>(length) + 1, '\0');
    telvarra_doctor(report.data(), length + 1);
    report.resize(static_cast<std::size_t>(length));
    out << report << std::flush;
    return report.find("verdict    not available") == std::string::npos ? kExitOk
                                                                        : kExitMakeUnavailable;
}

int runInfo(const CommonOptions& common, const std::string& id, std::ostream& out) {
    Session session(common.verbosity);
    const DeviceInfo device = session.open(id, common.type);
    CameraPublicInterface& library = session.library();
    int exitCode = kExitOk;

    out << recordText(device.cameraId) << '\n';
    printField(out, "make", makeName(device.cameraType));
    printField(out, "vendor", recordText(device.vendorName));
    printField(out, "serial number", recordText(device.serialNumber));
    printField(out, "model", recordText(device.modelName));
    printField(out, "display name", recordText(device.displayName));
    printField(out, "user name", recordText(device.userDefinedName));
    printField(out, "maximum size",
               device.maxWidth > 0 && device.maxHeight > 0
                   ? sizeText(device.maxWidth, device.maxHeight)
                   : "not reported");
    printField(out, "formats", formatsText(library.getSupportedImageFormats(session.id())));
    int width = 0;
    int height = 0;
    printField(out, "image size",
               library.getImageSize(session.id(), width, height) ? sizeText(width, height)
                                                                 : "not reported");

    // One frame shows what the camera really delivers, and that it delivers at all.
    ImageData frame{};
    if (library.startCapture(session.id()) && library.getCurrentFrame(session.id(), frame, 0)) {
        printField(out, "frame",
                   sizeText(frame.width, frame.height) + ", " + std::to_string(frame.channels) +
                       (frame.channels == 1 ? " channel" : " channels") + ", format " +
                       formatName(frame.format));
    } else {
        printField(out, "frame", "none: the camera delivered no frame");
        exitCode = kExitFailed;
    }
    library.stopCapture(session.id());

    out << "controls\n";
    for (const Control& control : controls()) {
        int value = 0;
        if (!control.read) {
            printField(out, control.name, "not readable");
        } else if (control.read(library, session.id(), value)) {
            printField(out, control.name, valueText(control, value));
        } else {
            printField(out, control.name, "failed to read");
            exitCode = kExitFailed;
        }
    }
    out << std::flush;
    return exitCode;
}

namespace {

// How long a still may take to reach the host after the shutter was pressed.
constexpr std::chrono::seconds kStillWait{10};

// What the frame callback received: stills only, never live view.
struct StillCatcher {
    bool arrived = false;
    std::string file;
    std::string problem;
    ImageData frame{};
    static void receive(const ImageData& frame, void* user) {
        auto& catcher = *static_cast<StillCatcher*>(user);
        catcher.arrived = true;
        catcher.frame = frame;
        writeImage(catcher.file, frame, ImageFileFormat::Png, catcher.problem);
    }
};

// What the virtual cameras write into their pictures: the serial number.
std::string shownIdOf(const DeviceInfo& device, const std::string& id) {
    const std::string serial = recordText(device.serialNumber);
    return serial.empty() ? id : serial;
}

fs::path outputFolder(const std::string& name) {
    fs::path directory = fs::absolute(fs::path(name)).lexically_normal();
    // "." normalises to a trailing separator: print the folder by its name.
    if (directory.filename().empty() && directory.has_relative_path()) {
        directory = directory.parent_path();
    }
    std::error_code error;
    fs::create_directories(directory, error);
    if (error || !fs::is_directory(directory)) {
        throw CliError(kExitFailed, "cannot create the folder " + directory.string() + ": " +
                                        (error ? error.message() : "not a folder"));
    }
    return directory;
}

}  // namespace

int runGrab(const CommonOptions& common, const GrabOptions& grab, std::ostream& out,
            std::ostream& err) {
    Session session(common.verbosity);
    const DeviceInfo device = session.open(grab.id, common.type);
    CameraPublicInterface& library = session.library();
    const std::string shownId = shownIdOf(device, grab.id);
    const std::string geometry = describeGeometry(grab, makeOfType(device.cameraType));

    if (!grab.settings.empty()) {
        std::string applied;
        for (const auto& [control, value] : grab.settings) {
            applied += std::string(applied.empty() ? "" : ", ") + control->name + " " +
                       applySetting(session, *control, value);
        }
        out << grab.id << ": " << applied << '\n' << std::flush;
    }

    const fs::path directory = grab.save ? outputFolder(grab.outputDirectory) : fs::path();
    if (!library.startCapture(session.id())) {
        throw CliError(kExitFailed, "camera '" + grab.id + "' would not start capturing");
    }

    const std::string baseName = fileNameSafe(grab.id);
    const int digits = std::max<int>(4, static_cast<int>(std::to_string(grab.count).size()));
    // Compressing a large frame takes longer than grabbing it: every processor writes files.
    std::optional<FrameSaver> saver;
    if (grab.save)
        saver.emplace(grab.saveFormat, std::max(1u, std::thread::hardware_concurrency()));
    const auto start = std::chrono::steady_clock::now();
    const auto rate = [&](int frames) {
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        return elapsed.count() > 0 ? frames / elapsed.count() : 0.0;
    };

    // What each grabbed frame was; whether its file was written is the saver's to say.
    struct Grabbed {
        int index;
        std::string name;
        int32_t frameNumber;
    };
    std::vector<Grabbed> grabbed;
    int grabFailures = 0;
    int failedInARow = 0;
    bool gaveUp = false;
    std::string lastError;
    std::string shape;  // of the last frame grabbed
    {
        ProgressBar progress(err, standardErrorIsTerminal(), grab.id, grab.count);
        for (int index = 1; index <= grab.count; ++index) {
            ImageData frame{};
            if (library.getCurrentFrame(session.id(), frame, 0)) {
                std::string name = std::to_string(index);
                name = baseName + "-" + std::string(digits - name.size(), '0') + name + "." +
                       fileExtension(grab.saveFormat, frame.channels);
                shape = " of " + sizeText(frame.width, frame.height) +
                        (frame.channels == 1 ? " grey" : " colour");
                grabbed.push_back({index, name, frame.frameNumber});
                if (saver) saver->save(index, directory / name, frame);
                failedInARow = 0;
            } else {
                ++grabFailures;
                ++failedInARow;
                lastError = "the camera delivered no frame";
            }
            const int done = saver ? saver->written() : static_cast<int>(grabbed.size());
            progress.update(index, grabFailures + (saver ? saver->failed() : 0), rate(done));
            if (failedInARow == kFailuresInARowToGiveUp ||
                (saver && saver->failedInARow() >= kFailuresInARowToGiveUp)) {
                gaveUp = index < grab.count;
                break;
            }
        }
        if (saver) saver->finish();
    }
    library.stopCapture(session.id());

    if (gaveUp) {
        err << "telvarra: gave up after " << kFailuresInARowToGiveUp << " frames in a row failed\n";
    }
    // Consecutive pictures of consecutive frames, one line each.
    std::vector<PictureRun> runs;
    int written = 0;
    for (const Grabbed& frame : grabbed) {
        if (saver) {
            const std::string problem = saver->problem(frame.index);
            if (!problem.empty()) {
                lastError = problem;
                continue;
            }
        }
        ++written;
        if (runs.empty() || runs.back().lastIndex != frame.index - 1 ||
            int64_t{runs.back().lastFrame} + 1 != frame.frameNumber) {
            runs.push_back({frame.index, frame.index, frame.name, frame.name, frame.frameNumber,
                            frame.frameNumber});
        } else {
            runs.back().lastIndex = frame.index;
            runs.back().lastName = frame.name;
            runs.back().lastFrame = frame.frameNumber;
        }
    }
    const int failed = grabFailures + static_cast<int>(grabbed.size()) - written;
    out << grab.id << ": " << written << (written == 1 ? " frame" : " frames") << shape;
    if (saver) {
        std::string files;
        if (written == 1) files = " (" + runs.front().firstName + ")";
        if (written > 1)
            files = " (" + runs.front().firstName + " .. " + runs.back().lastName + ")";
        out << " written to " << directory.string() << files;
    } else {
        out << " grabbed, not saved";
    }
    out << ", " << failed << " failed, " << fixedRate(rate(written)) << " frames/s" << '\n';
    // After the progress bar has ended its line.
    for (const PictureRun& run : runs) {
        if (!saver) break;
        out << "  ";
        if (run.firstIndex == run.lastIndex) {
            out << run.firstName << " shows " << shownId << " (" << makeName(device.cameraType)
                << ") frame " << run.firstFrame;
        } else {
            out << run.firstName << " .. " << run.lastName << " show " << shownId << " ("
                << makeName(device.cameraType) << ") frames " << run.firstFrame << " .. "
                << run.lastFrame;
        }
        out << ", " << geometry << '\n';
    }
    out << std::flush;
    if (failed > 0) err << "telvarra: last failure: " << lastError << '\n';
    return written == grab.count ? kExitOk : kExitFailed;
}

int runStill(const CommonOptions& common, const StillOptions& still, std::ostream& out) {
    Session session(common.verbosity);
    const DeviceInfo device = session.open(still.id, common.type);
    if (device.cameraType != RUVO_CAMERA_CANON) {
        throw CliError(kExitUsage, "camera '" + still.id + "' has no shutter button to press: " +
                                       "stills are Canon bodies' only");
    }
    CameraPublicInterface& library = session.library();
    const fs::path file =
        outputFolder(still.outputDirectory) / (fileNameSafe(still.id) + "-still.png");
    StillCatcher catcher;
    catcher.file = file.string();
    library.registerFrameCallback(session.id(), StillCatcher::receive, &catcher);
    const char* command = still.autofocus ? "sendCommandGrabFrame_1" : "sendCommandGrabFrame_0";
    if (!library.setCameraStringValue(session.id(), command, "")) {
        throw CliError(kExitFailed, "camera '" + still.id + "' refused the shutter button");
    }
    // The body's events arrive while the program talks to the camera: asking whether it is
    // still connected is enough.
    const auto deadline = std::chrono::steady_clock::now() + kStillWait;
    while (!catcher.arrived && std::chrono::steady_clock::now() < deadline &&
           library.isCameraConnected(session.id())) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    library.unregisterFrameCallback(session.id());
    if (!catcher.arrived) {
        throw CliError(kExitFailed, "camera '" + still.id + "' sent no still within " +
                                        std::to_string(kStillWait.count()) + " s");
    }
    if (!catcher.problem.empty()) throw CliError(kExitFailed, catcher.problem);
    out << file.filename().string() << ": still of "
        << sizeText(catcher.frame.width, catcher.frame.height) << " colour written to "
        << file.parent_path().string() << '\n'
        << "  " << file.filename().string() << " shows " << shownIdOf(device, still.id) << " ("
        << makeName(device.cameraType) << ") frame " << catcher.frame.frameNumber << ", "
        << describeGeometry(GrabOptions{}, makeOfType(device.cameraType)) << std::endl;
    return kExitOk;
}

int runGet(const CommonOptions& common, const std::string& id, const std::string& name,
           std::ostream& out) {
    const Control* control = findControl(name);
    if (control && !control->read) {
        throw CliError(kExitUsage, name + " cannot be read back from a camera");
    }
    Session session(common.verbosity);
    session.open(id, common.type);
    if (control) {
        int value = 0;
        if (!control->read(session.library(), session.id(), value)) {
            throw CliError(kExitFailed, "camera '" + id + "' did not report " + name);
        }
        out << valueText(*control, value) << std::endl;
        return kExitOk;
    }
    char* value = nullptr;
    if (!session.library().getCameraParameter(session.id(), name.c_str(), &value) || !value) {
        throw CliError(kExitFailed, "camera '" + id + "' did not report parameter " + name);
    }
    out << value << std::endl;
    return kExitOk;
}

int runSet(const CommonOptions& common, const std::string& id, const std::string& name,
           const std::string& value, std::ostream& out, std::ostream& err) {
    int parsed = 0;
    const Control* control =
        findControl(name) ? &requireControlValue(name, value, parsed) : nullptr;
    Session session(common.verbosity);
    session.open(id, common.type);
    if (control) {
        out << name << " " << applySetting(session, *control, parsed) << std::endl;
        if (lastsForSessionOnly(*control)) {
            err << "telvarra: note: " << name
                << " lasts only while a program has the camera open; grab's options apply it"
                   " to saved frames\n";
        }
        return kExitOk;
    }
    if (!session.library().setCameraParameter(session.id(), name.c_str(), value.c_str())) {
        throw CliError(kExitFailed,
                       "camera '" + id + "' refused parameter " + name + " = " + value);
    }
    out << name << " " << value << std::endl;
    return kExitOk;
}

}  // namespace telvarra::cli
