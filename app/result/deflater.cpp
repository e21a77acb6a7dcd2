// Bytes in fewer bytes; see the header.
#include "result/deflater.hpp"

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "system/failure.hpp"

namespace host {

Deflater::Deflater(int level, int memoryLevel) : stream_(std::make_unique<z_stream>()) {
  constexpr int windowBits = 15;
  if (deflateInit2(stream_.get(), level, Z_DEFLATED, windowBits, memoryLevel, Z_DEFAULT_STRATEGY) != Z_OK)
    throw Failure("not enough memory to compress");
}

Deflater::~Deflater() {
  deflateEnd(stream_.get());
}

void Deflater::add(std::string_view bytes) {
  constexpr std::size_t most = std::numeric_limits<uInt>::max();  // zlib counts in so many bits
  for (; !bytes.empty(); bytes.remove_prefix(std::min(bytes.size(), most))) run(bytes.substr(0, most), false);
}

std::string Deflater::finish() {
  run({}, true);
  return std::move(deflated_);
}

void Deflater::run(std::string_view bytes, bool last) {
  char room[1 << 16];
  stream_->next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));  // zlib reads only
  stream_->avail_in = static_cast<uInt>(bytes.size());
  do {
    stream_->next_out = reinterpret_cast<Bytef*>(room);
    stream_->avail_out = sizeof room;
    deflate(stream_.get(), last ? Z_FINISH : Z_NO_FLUSH);
    deflated_.append(room, sizeof room - stream_->avail_out);
  } while (stream_->avail_out == 0);
}

}  // namespace host
