// The subcommands, each run in a session of its own. They print their results on `out`, and
// throw CliError for anything that stops them; the returned code is the program's exit code.
#ifndef TELVARRA_TOOLS_COMMANDS_H
#define TELVARRA_TOOLS_COMMANDS_H

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "Controls.h"
#include "ImageFiles.h"
#include "telvarra/Types.h"

namespace telvarra::cli {

struct CommonOptions {
    int verbosity = 0;
    Ruvo_CameraType type = RUVO_CAMERA_ANY;  // any: every make
};

struct GrabOptions {
    std::string id;
    int count = 1;
    std::string outputDirectory = ".";
    ImageFileFormat saveFormat = ImageFileFormat::Png;
    bool save = true;  // false: frames are grabbed and counted only
    // Applied in this order after opening, before the first frame.
    std::vector<std::pair<const Control*, int>> settings;
};

struct StillOptions {
    std::string id;
    std::string outputDirectory = ".";
    bool autofocus = false;
};

int runList(const CommonOptions& common, std::ostream& out);
// What the library finds of each make's SDK; 4 when a make would not start for it.
int runDoctor(std::ostream& out);
int runInfo(const CommonOptions& common, const std::string& id, std::ostream& out);
int runGrab(const CommonOptions& common, const GrabOptions& grab, std::ostream& out,
            std::ostream& err);
// Presses a Canon body's shutter button and saves the still it sends as ID-still.png.
int runStill(const CommonOptions& common, const StillOptions& still, std::ostream& out);
// A fixed control by its name (see Controls.h); any other name is the camera's text parameter.
int runGet(const CommonOptions& common, const std::string& id, const std::string& name,
           std::ostream& out);
int runSet(const CommonOptions& common, const std::string& id, const std::string& name,
           const std::string& value, std::ostream& out, std::ostream& err);

}  // namespace telvarra::cli

#endif
