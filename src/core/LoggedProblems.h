// The last warning or error the library logged on the calling thread, kept whether or not a log
// file is attached: what the C interface reports as a call's reason for failing.
#ifndef TELVARRA_CORE_LOGGEDPROBLEMS_H
#define TELVARRA_CORE_LOGGEDPROBLEMS_H

#include <string>

namespace telvarra {

const std::string& lastLoggedProblem();
void forgetLoggedProblem();

}  // namespace telvarra

#endif
