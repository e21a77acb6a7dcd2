// The options of solve as other commands ask for them.
#pragma once

#include <string>
#include <vector>

namespace host {

enum class OptionKind { unknown, flag, value };

// name: with its dashes.
OptionKind solveOption(const std::string& name);

// What is wrong with these arguments of solve, as one sentence; empty: nothing that can be seen without the files.
std::string solveComplaint(const std::vector<std::string>& words);

}  // namespace host
