// Identifiers made into parts of file names. Identifiers come from devices, and anyone on a
// camera's network can set some of them: a separator, a drive prefix or a control character must
// never take a file outside its folder or make a name the system refuses.
#ifndef TELVARRA_CORE_FILENAMES_H
#define TELVARRA_CORE_FILENAMES_H

#include <string>

namespace telvarra {

// `text` with every byte outside printable ASCII, and every separator, colon, '%' and other
// character Windows refuses in a name (* ? " < > |), written as '%' and two hexadecimal digits,
// so ordinary identifiers keep their names, spaces and all, and no two identifiers share one. A
// text of only dots is encoded whole.
std::string fileNamePart(const std::string& text);

// Whether `path` names a link (whose target a write would replace), a FIFO (whose open would
// hang the host), a device (which could be read without end) or a socket. Plain files, folders
// and paths that do not exist answer false: opening them fails or works as usual.
bool notAPlainFile(const std::string& path);

}  // namespace telvarra

#endif
