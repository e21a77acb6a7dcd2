// The command `tornwalzen check`: whether a run will go well.
#pragma once

#include <string>

#include "command/part_check.hpp"

namespace host {

// Prints what checkPart finds, as a page or as one JSON object, and writes the selection that --out names. Returns 0, or
// 2 where solve would refuse the part; throws Failure as checkPart does, and where the selection cannot be written.
int check(const CheckOptions& options);

// What is printed; ends with a newline.
std::string checkPage(const PartCheck& check);
std::string checkJson(const PartCheck& check);

}  // namespace host
