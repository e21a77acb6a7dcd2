// Reads a whole input file into memory, with a sentence for each way that can fail.
#ifndef TORNWALZEN_APP_INPUT_FILE_HPP
#define TORNWALZEN_APP_INPUT_FILE_HPP

#include <string>

namespace host {

// The bytes of the file `path`. Throws Failure: not there, a folder, not readable, cut off while being read.
std::string readInputFile(const std::string& path);

}  // namespace host

#endif
