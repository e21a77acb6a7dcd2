// Whether two paths lead to one file; see the header.
#include "system/same_file.hpp"

#include "system/failure.hpp"
#include "system/file.hpp"

namespace host {

bool sameFile(const std::string& a, const std::string& b) {
  FileStatus first, second;
  return statusOf(a, first) && statusOf(b, second) && first.kind == FileKind::plain &&
         first.device == second.device && first.number == second.number;
}

void checkOutputsSpareInputs(const std::vector<std::string>& inputs, const std::vector<std::string>& outputs,
                             const std::string& cure) {
  for (const std::string& output : outputs)
    for (const std::string& input : inputs)
      if (!input.empty() && !output.empty() && sameFile(input, output))
        throw Failure(output + " would be replaced, but it is read as " + input + "; " + cure);
}

}  // namespace host
