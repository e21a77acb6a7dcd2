// Work beside the work: in a thread of its own.
#pragma once

#include <future>
#include <utility>

#include "system/process.hpp"

namespace host {

// Begins work() in a thread that no ending signal interrupts; what it returns or throws comes by get, and whoever drops
// the future waits for the end. Where no thread can be had, get does the work.
template <class Work>
auto inBackground(Work work) {
  const SignalsHeldBack heldBack;  // which the thread inherits
  return std::async(std::launch::async | std::launch::deferred, std::move(work));
}

// The same where `wanted`; else get does the work.
template <class Work>
auto inBackgroundIf(bool wanted, Work work) {
  return wanted ? inBackground(std::move(work)) : std::async(std::launch::deferred, std::move(work));
}

}  // namespace host
