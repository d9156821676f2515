// What the library finds of each make's SDK, as text for a person: the file it looks for and
// where the system found it, whether it loads and if not why, and which required functions the
// file lacks. From the same bindings and lookup the drivers use.
#ifndef TELVARRA_API_DOCTOR_H
#define TELVARRA_API_DOCTOR_H

#include <string>

namespace telvarra {

std::string doctorReport();

}  // namespace telvarra

#endif
