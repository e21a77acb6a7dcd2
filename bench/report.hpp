// Where the figures go: every one into a CSV file, the ratios also into plain lines at the end.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "clock.hpp"

namespace bench {

class Report {
 public:
  /// Writes to the file `path`, anew; throws std::runtime_error where it cannot be written.
  explicit Report(const std::string& path);
  ~Report();
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

  /// One figure. subject: what was measured on, such as "jittered-100k"; who: whose figure.
  void figure(const std::string& phase, const std::string& subject, const std::string& who,
              const std::string& quantity, double value, const std::string& unit);
  void time(const std::string& phase, const std::string& subject, const std::string& who,
            const std::vector<Seconds>& samples);

  /// A ratio to be printed at the end as `ratio <phase> <size> <value>`.
  void ratio(const std::string& phase, const std::string& size, double value);
  void printRatios() const;

 private:
  std::FILE* csv_;
  std::vector<std::string> ratios_;
};

/// 1000 -> "1k", 1000000 -> "1M".
std::string sizeName(std::int32_t count);

}  // namespace bench
