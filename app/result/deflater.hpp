// Bytes in fewer bytes: a zlib stream (RFC 1950) that is made piece by piece.
#pragma once

#include <memory>
#include <string>
#include <string_view>

struct z_stream_s;

namespace host {

class Deflater {
 public:
  // level: 1, quick, to 9, short. memoryLevel: 1 to 9; the lower, the shorter the blocks that get codes of their own.
  // Throws Failure where there is no memory.
  explicit Deflater(int level, int memoryLevel = 8);
  ~Deflater();
  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;

  void add(std::string_view bytes);
  // The whole stream; behind it nothing can be added.
  std::string finish();

 private:
  void run(std::string_view bytes, bool last);
  std::unique_ptr<z_stream_s> stream_;
  std::string deflated_;
};

}  // namespace host
