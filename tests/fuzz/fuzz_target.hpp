// The fuzzed property of a target, for the fuzzer and for the replay of its corpus.
#pragma once

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
