#include "result/deflater.hpp"

#include <gtest/gtest.h>
#include <zlib.h>

#include <random>

using namespace host;

namespace {

std::string inflated(const std::string& deflated, std::size_t length) {
  std::string bytes(length + 1, '?');
  uLongf size = bytes.size();
  EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(bytes.data()), &size,
                       reinterpret_cast<const Bytef*>(deflated.data()), deflated.size()),
            Z_OK);
  bytes.resize(size);
  return bytes;
}

}  // namespace

TEST(Deflater, GivesBackWhatWasAddedInWhateverPieces) {
  std::mt19937 random(5);
  std::string all;
  for (int k = 0; k < 300000; ++k)
    all += static_cast<char>(random() % 200);  // more than one piece of its room
  for (const std::size_t piece : {std::size_t{1000}, std::size_t{70000}, all.size()}) {
    Deflater deflater(4);
    for (std::size_t at = 0; at < all.size(); at += piece)
      deflater.add(std::string_view(all).substr(at, piece));
    EXPECT_TRUE(inflated(deflater.finish(), all.size()) == all) << piece;
  }
}

TEST(Deflater, NothingIsAStreamToo) {
  Deflater deflater(1);
  deflater.add("");
  EXPECT_EQ(inflated(deflater.finish(), 0), "");
}
