// Arguments that a host left out: a null pointer where a call needs a value or an array ends the call.
#pragma once

#include <initializer_list>

#include "ground/analysis.hpp"

namespace tornwalzen {

struct HostArgument {
  HostArgument(const char* itsName, const void* itsPointer, Int64 itsLength = 1)
      : name(itsName), pointer(itsPointer), length(itsLength) {}
  template <class T>
  HostArgument(const Vector<T>& array) : HostArgument(array.name(), array.data(), array.length()) {}
  template <class T>
  HostArgument(const Table<T>& array) : HostArgument(array.name(), array.data(), array.rows()) {}

  const char* name;
  const void* pointer;
  Int64 length;  // elements that the call may touch; none: the pointer may be null
};

/// True if no argument of the call is missing. Else keeps the text " FATALER FEHLER : Argument NAME fehlt @"
/// of the first one that is, sets `ierrso` to -1 and returns false.
bool argumentsGiven(Analysis& run, std::initializer_list<HostArgument> arguments);

}  // namespace tornwalzen
