// File descriptor 1, turned to /dev/null and back.
#include "quiet.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace bench {

Quiet::Quiet() : kept_(dup(1)) {
  std::fflush(stdout);
  const int nowhere = open("/dev/null", O_WRONLY);
  dup2(nowhere, 1);
  close(nowhere);
}

Quiet::~Quiet() {
  std::fflush(stdout);
  dup2(kept_, 1);
  close(kept_);
}

}  // namespace bench
