// Reads a whole input file into memory, with a sentence for each way that can fail.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace host {

// Looks at the first 64 KiB of a file (all of it, if it is shorter) and at its length in bytes (-1: not known
// before the end, as with a pipe), and may throw Failure, before the rest is read.
using HeadCheck = std::function<void(const std::string& head, std::int64_t length)>;

// The bytes of the file `path`. Throws Failure: not there, a folder, not readable, longer than the memory,
// changed or cut off while it was read, a pipe that does not end or that nobody opens to write for 3 s; and what `check` throws.
std::string readInputFile(const std::string& path, const HeadCheck& check = {});

// The bytes of the plain file `path` of a run's own records, of which the longest have some thousand; empty where there is no
// such file, it has more than 1 MiB, or it cannot be read.
std::string readRecordFile(const std::string& path);

}  // namespace host
