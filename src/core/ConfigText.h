// The configuration file's lines apart from the file: read from and written to streams, so that
// the reader can be driven from memory as well (the fuzz target does).
#ifndef TELVARRA_CORE_CONFIGTEXT_H
#define TELVARRA_CORE_CONFIGTEXT_H

#include <iosfwd>
#include <map>
#include <string>

namespace telvarra {

using ConfigValues = std::map<std::string, std::string>;

// Adds the key=value lines of `input` to `values`, a later line replacing an earlier one of the
// same key. Empty lines, lines starting with '#' and lines without '=' are skipped; the key is
// everything before the first '=', the value everything after it, nothing trimmed.
void readConfigText(std::istream& input, ConfigValues& values);

// One key=value line per entry, in key order; what readConfigText reads back as `values`.
void writeConfigText(std::ostream& output, const ConfigValues& values);

}  // namespace telvarra

#endif
