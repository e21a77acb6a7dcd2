// Whether two paths lead to one file; see the header.
#include "system/same_file.hpp"

#include <sys/stat.h>

#include "system/failure.hpp"

namespace host {

bool sameFile(const std::string& a, const std::string& b) {
  struct stat first {};
  struct stat second {};
  return ::stat(a.c_str(), &first) == 0 && ::stat(b.c_str(), &second) == 0 && S_ISREG(first.st_mode) &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

void checkOutputsSpareInputs(const std::vector<std::string>& inputs, const std::vector<std::string>& outputs,
                             const std::string& cure) {
  for (const std::string& output : outputs)
    for (const std::string& input : inputs)
      if (!input.empty() && !output.empty() && sameFile(input, output))
        throw Failure(output + " would be replaced, but it is read as " + input + "; " + cure);
}

}  // namespace host
