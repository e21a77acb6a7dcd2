// The sentence with which something is refused.
#pragma once

#include <string>

#include "system/failure.hpp"

// What `act` throws as a Failure, or a remark that it threw none.
template <class Act>
std::string refusal(Act act) {
  try {
    act();
  } catch (const host::Failure& failure) {
    return failure.what();
  }
  return "(not refused)";
}
