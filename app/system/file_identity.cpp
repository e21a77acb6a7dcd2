// By what a file is known again; see the header.
#include "system/file_identity.hpp"

#include <cstdint>
#include <cstdio>
#include <filesystem>

#include "system/path.hpp"

namespace host {

std::string contentHash(std::string_view content) {
  constexpr std::uint64_t offset = 14695981039346656037u, prime = 1099511628211u;  // of FNV-1a for 64 bits
  std::uint64_t hash = offset;
  for (const char byte : content) hash = (hash ^ static_cast<unsigned char>(byte)) * prime;
  char text[32];
  std::snprintf(text, sizeof text, "fnv1a64:%016llx", static_cast<unsigned long long>(hash));
  return text;
}

FileIdentity identityOf(const std::string& path, std::string_view content) {
  FileIdentity identity{"", contentHash(content)};
  std::error_code error;
  if (!std::filesystem::is_regular_file(pathOf(path), error)) return identity;
  const std::filesystem::path place = std::filesystem::canonical(pathOf(path), error);
  if (!error) identity.path = pathText(place);
  return identity;
}

bool sameIdentity(const FileIdentity& a, const FileIdentity& b) {
  return (!a.path.empty() && a.path == b.path) || (!a.hash.empty() && a.hash == b.hash);
}

}  // namespace host
