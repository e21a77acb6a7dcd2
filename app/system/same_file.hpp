// Whether two paths lead to one file, whatever links lie between, so that no output replaces an input.
#pragma once

#include <string>
#include <vector>

namespace host {

// True if both paths lead to the same plain file: the same device and inode behind all links. False if one of
// them does not exist, or is a pipe or a device, which nothing replaces.
bool sameFile(const std::string& a, const std::string& b);

// Throws Failure if an output would replace an input, before anything is written. inputs, outputs: paths; empty
// ones are passed over. cure: what the user can do, for the end of the sentence.
void checkOutputsSpareInputs(const std::vector<std::string>& inputs, const std::vector<std::string>& outputs,
                             const std::string& cure);

}  // namespace host
