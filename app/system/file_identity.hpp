// By what a file is known again: its place and its bytes.
#pragma once

#include <string>
#include <string_view>

namespace host {

struct FileIdentity {
  std::string path;  // absolute, behind all links; empty: not a plain file (a pipe), or not known
  std::string hash;  // of the bytes; empty: not known
};

// content: the bytes that were read from `path`.
FileIdentity identityOf(const std::string& path, std::string_view content);

// The 64-bit FNV-1a hash (Fowler, Noll, Vo) as "fnv1a64:" and 16 hexadecimal digits. It tells files apart that
// were not made to be taken for one another.
std::string contentHash(std::string_view content);

// Whether both are known and have the same place or the same bytes: a part that was edited is still that part,
// and so is a copy of it.
bool sameIdentity(const FileIdentity& a, const FileIdentity& b);

}  // namespace host
