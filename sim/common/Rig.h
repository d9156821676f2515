// The rig file: one text file describing the virtual cameras of every make, named by the
// environment variable TELVARRA_SIM_RIG (read by the simulators only). Each simulator takes the
// lines of its own make.
//
// Grammar (one device per line):
//   line      := blank | comment | device
//   comment   := '#' up to the end of the line (also allowed after a device)
//   device    := make { attribute }
//   make      := hikvision | daheng | mindvision | dvp | canon
//   attribute := key '=' value, attributes separated by blanks (spaces or tabs)
//   value     := bare | '"' any characters but '"' '"'
//   bare      := one or more characters other than blanks, '"' and '#'
// Keys (each at most once per line):
//   id        required, not empty: the serial number, the identifier hosts use
//   user      user-defined name (default empty)
//   model     model name (default: the make's own)
//   layer     transport, a word of the make (default: the make's own)
//   size      WIDTHxHEIGHT, each 1..65535 (default 640x480)
//   format    mono8 | rgb8 | bgr8 | bayer_gr8 | bayer_rg8 | bayer_gb8 | bayer_bg8: what the sensor
//             delivers at power-up (default mono8, canon rgb8, or the first of formats)
//   formats   comma-separated formats the device can switch to, holding format (default: by
//             the sensor format, see defaultSupportedFormats)
//   seed      test-pattern seed, 0..4294967295 (default: a hash of the id)
// A line that breaks a rule is skipped as a whole and reported with its number; so is a second
// line of the same make with an id already used. Line ends may be CR LF.
#ifndef TELVARRA_SIM_COMMON_RIG_H
#define TELVARRA_SIM_COMMON_RIG_H

#include <optional>
#include <string>
#include <vector>

#include "sim/common/VirtualDevice.h"

namespace telvarra::sim {

constexpr const char* kRigEnvironmentVariable = "TELVARRA_SIM_RIG";

struct RigError {
    unsigned line = 0;  // 0: the file itself
    std::string make;   // the line's make; empty when it has none or names no make we know
    std::string message;
};

struct RigDevice {
    unsigned line = 0;
    DeviceDescription device;
};

struct Rig {
    std::vector<RigDevice> devices;
    std::vector<RigError> errors;

    std::vector<RigDevice> devicesOf(const std::string& make) const;
};

// One device line; nullopt with `error` set when it breaks a rule. A blank or comment-only line
// is an error here ("no device").
std::optional<DeviceDescription> parseRigLine(const std::string& line, std::string& error);

Rig parseRig(const std::string& text);

// The file's devices; an unreadable file gives one error of line 0.
Rig readRigFile(const std::string& path);

}  // namespace telvarra::sim

#endif
