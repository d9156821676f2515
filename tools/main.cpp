// telvarra: lists cameras, shows one, grabs frames into picture files, reads and writes controls.
// This file is the command line; the work is in Commands.cpp.
#include <CLI/CLI.hpp>
#include <cctype>
#include <exception>
#include <iostream>
#include <string>

#include "CliError.h"
#include "Commands.h"
#include "Controls.h"
#include "Makes.h"

namespace {

using namespace telvarra::cli;

const char kExitCodes[] =
    "Exit codes:\n"
    "  0  done\n"
    "  1  the camera refused a setting, or a frame or a file failed\n"
    "  2  bad arguments\n"
    "  3  unknown or ambiguous camera identifier\n"
    "  4  no make available (no driver, or its SDK could not be loaded or started)";

std::string controlsHelp() {
    std::string text = "Controls:\n";
    for (const Control& control : controls()) {
        std::string name = control.name;
        name.resize(15, ' ');
        std::string values = valuesAccepted(control);
        values.resize(17, ' ');
        text += "  " + name + values + control.about + "\n";
    }
    return text + "Any other name is passed to the camera as a text parameter.\n";
}

struct Arguments {
    CommonOptions common;
    int typeKey = 0;
    GrabOptions grab;
    StillOptions still;
    std::string format, mirror, autoExposure, saveFormat = "png";
    bool noSave = false;
    int rotate = 0, zoom = 0, gain = 0, exposure = 0, brightness = 0;
    std::string id, control, value;
};

// --type's word (any case) or number becomes the make's registry key.
std::string toMakeKey(std::string& text) {
    std::string lower = text;
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    for (const auto& [name, key] : makeChoices()) {
        if (lower == name || lower == std::to_string(key)) {
            text = std::to_string(key);
            return "";
        }
    }
    return "unknown make '" + text + "' (makes: mindvision, hikvision, dvp, daheng, canon)";
}

// The options every subcommand takes.
void addCommonOptions(CLI::App& command, Arguments& arguments) {
    command
        .add_option("--type", arguments.typeKey,
                    "Only this make: mindvision, hikvision, dvp, daheng, canon (or 1..5); names "
                    "the make when two makes have a camera of the same identifier")
        ->transform(CLI::Validator(toMakeKey, "", "make"))
        ->type_name("MAKE");
    command.add_flag("-v,--verbose", arguments.common.verbosity,
                     "Show the library's log on standard output (twice: debug lines too)");
}

CLI::App& addIdArgument(CLI::App& command, Arguments& arguments) {
    command.add_option("ID", arguments.id, "Camera identifier (serial number), see 'list'")
        ->required();
    return command;
}

// Grab's options become control settings, in the order the camera should take them.
void collectGrabSettings(Arguments& arguments, const CLI::App& grab) {
    auto& settings = arguments.grab.settings;
    const auto add = [&](const char* name, int value) {
        settings.emplace_back(findControl(name), value);
    };
    if (grab.count("--format"))
        add("format", *parseValue(*findControl("format"), arguments.format));
    if (arguments.mirror.find('h') != std::string::npos) add("hmirror", 1);
    if (arguments.mirror.find('v') != std::string::npos) add("vmirror", 1);
    if (grab.count("--rotate")) add("rotate", arguments.rotate);
    if (grab.count("--auto-exposure")) add("auto-exposure", arguments.autoExposure == "on");
    if (grab.count("--exposure")) add("exposure", arguments.exposure);
    if (grab.count("--gain")) add("gain", arguments.gain);
    if (grab.count("--brightness")) add("brightness", arguments.brightness);
    if (grab.count("--zoom")) add("zoom", arguments.zoom);
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{
        "telvarra: lists industrial cameras, shows their settings and saves frames as "
        "picture files, through the Telvarra library.",
        "telvarra"};
    app.require_subcommand(1);
    app.set_version_flag("--version", std::string("telvarra ") + TELVARRA_VERSION_TEXT);
    app.footer(kExitCodes);
    // Set before the subcommands are added: each takes its parent's at creation.
    app.failure_message([](const CLI::App* failed, const CLI::Error& error) {
        std::string command = "telvarra";
        for (const CLI::App* sub : failed->get_subcommands()) command += " " + sub->get_name();
        return "telvarra: error: " + std::string(error.what()) + "\nRun '" + command +
               " --help' for more information.\n";
    });
    Arguments arguments;

    CLI::App& list = *app.add_subcommand("list", "List the cameras of every make that starts");
    addCommonOptions(list, arguments);

    CLI::App& doctor = *app.add_subcommand(
        "doctor",
        "Show, for each make, which SDK file is looked for, where it was found, "
        "whether it loads and what it lacks");
    doctor.footer("Exit code 4 when a make's SDK is missing or lacks a function it needs.");

    CLI::App& info = *app.add_subcommand(
        "info", "Show a camera's record, formats, size, one frame's shape and every control");
    addIdArgument(info, arguments);
    addCommonOptions(info, arguments);

    CLI::App& grab = *app.add_subcommand(
        "grab", "Grab frames and save each as a picture file (PNG, PGM / PPM or BMP)");
    addIdArgument(grab, arguments);
    addCommonOptions(grab, arguments);
    grab.add_option("-n,--count", arguments.grab.count, "Frames to grab")
        ->check(CLI::Range(1, 1000000))
        ->capture_default_str();
    grab.add_option("-o,--output", arguments.grab.outputDirectory,
                    "Folder for the picture files (created when missing)")
        ->capture_default_str();
    grab.add_option("--save-format", arguments.saveFormat,
                    "png (compressed), pnm (PGM for grey, PPM for colour) or bmp, both "
                    "uncompressed")
        ->check(CLI::IsMember({"png", "pnm", "bmp"}))
        ->capture_default_str();
    grab.add_flag("--no-save", arguments.noSave,
                  "Save nothing: grab the frames and report the frame rate alone");
    grab.add_option("--format", arguments.format, "Pixel format to switch the camera to")
        ->check(CLI::IsMember({"mono8", "rgb8", "bgr8"}));
    grab.add_option("--mirror", arguments.mirror, "Mirror left-right (h), top-bottom (v) or both")
        ->check(CLI::IsMember({"h", "v", "hv", "vh"}));
    grab.add_option("--rotate", arguments.rotate, "Quarter turns clockwise")
        ->check(CLI::Range(0, 3));
    grab.add_option("--zoom", arguments.zoom, "Digital zoom steps (centre crop)")
        ->check(CLI::Range(0, 2));
    grab.add_option("--gain", arguments.gain, "Gain, percent of the camera's range")
        ->check(CLI::Range(0, 100));
    grab.add_option("--exposure", arguments.exposure, "Exposure time, percent of the range")
        ->check(CLI::Range(0, 100));
    grab.add_option("--brightness", arguments.brightness, "Brightness, percent of the range")
        ->check(CLI::Range(0, 100));
    grab.add_option("--auto-exposure", arguments.autoExposure, "Automatic exposure")
        ->check(CLI::IsMember({"on", "off"}));
    grab.footer(std::string("Files are named ID-0001.png, ID-0002.png, ... (.pgm or .ppm, .bmp "
                            "by the format); existing ones are replaced. They are written while "
                            "the next frames are grabbed.\n\n") +
                kExitCodes);

    CLI::App& still = *app.add_subcommand(
        "still", "Press a Canon body's shutter button and save its still as a PNG file");
    addIdArgument(still, arguments);
    addCommonOptions(still, arguments);
    still
        .add_option("-o,--output", arguments.still.outputDirectory,
                    "Folder for the PNG file (created when missing)")
        ->capture_default_str();
    still.add_flag("--autofocus", arguments.still.autofocus, "Focus before the picture is taken");
    still.footer(std::string("The file is named ID-still.png; the body's own JPEG file is also "
                             "kept beside the library as Canon__ID.jpg.\n\n") +
                 kExitCodes);

    CLI::App& get = *app.add_subcommand("get", "Print the current value of a control");
    addIdArgument(get, arguments);
    get.add_option("CONTROL", arguments.control, "Control or text parameter name")->required();
    addCommonOptions(get, arguments);
    get.footer(controlsHelp() + "\n" + kExitCodes);

    CLI::App& set = *app.add_subcommand("set", "Set a control, then print the value read back");
    addIdArgument(set, arguments);
    set.add_option("CONTROL", arguments.control, "Control or text parameter name")->required();
    set.add_option("VALUE", arguments.value, "New value")->required();
    addCommonOptions(set, arguments);
    set.footer(controlsHelp() +
               "hmirror, vmirror, rotate and zoom last only while a program has the camera "
               "open.\n\n" +
               kExitCodes);

    // CLI11 would call a stray word a missing subcommand; name it for what it is.
    if (argc > 1 && argv[1][0] != '-') {
        bool known = false;
        for (CLI::App* command : {&list, &doctor, &info, &grab, &still, &get, &set}) {
            known = known || command->check_name(argv[1]);
        }
        if (!known) {
            std::cerr << "telvarra: error: unknown command '" << argv[1]
                      << "' (commands: list, doctor, info, grab, still, get, set)\nRun 'telvarra "
                         "--help' for "
                         "more information.\n";
            return kExitUsage;
        }
    }

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        // Help and version end here too, with 0.
        return app.exit(error) == 0 ? kExitOk : kExitUsage;
    }

    try {
        arguments.common.type = static_cast<Ruvo_CameraType>(arguments.typeKey);
        if (list) return runList(arguments.common, std::cout);
        if (doctor) return runDoctor(std::cout);
        if (info) return runInfo(arguments.common, arguments.id, std::cout);
        if (grab) {
            arguments.grab.id = arguments.id;
            arguments.grab.save = !arguments.noSave;
            arguments.grab.saveFormat = arguments.saveFormat == "pnm"   ? ImageFileFormat::Pnm
                                        : arguments.saveFormat == "bmp" ? ImageFileFormat::Bmp
                                                                        : ImageFileFormat::Png;
            collectGrabSettings(arguments, grab);
            return runGrab(arguments.common, arguments.grab, std::cout, std::cerr);
        }
        if (still) {
            arguments.still.id = arguments.id;
            return runStill(arguments.common, arguments.still, std::cout);
        }
        if (get) return runGet(arguments.common, arguments.id, arguments.control, std::cout);
        if (set) {
            return runSet(arguments.common, arguments.id, arguments.control, arguments.value,
                          std::cout, std::cerr);
        }
    } catch (const CliError& error) {
        std::cout << std::flush;
        std::cerr << "telvarra: error: " << error.what() << std::endl;
        return error.code();
    } catch (const std::exception& error) {
        std::cout << std::flush;
        std::cerr << "telvarra: error: " << error.what() << std::endl;
        return kExitFailed;
    }
    return kExitUsage;
}
