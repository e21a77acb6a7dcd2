// CSV in long form: one line per figure.
#include "report.hpp"

#include <stdexcept>

namespace bench {

Report::Report(const std::string& path) : csv_(std::fopen(path.c_str(), "w")) {
  if (csv_ == nullptr) throw std::runtime_error("cannot write " + path);
  std::fprintf(csv_, "phase,subject,who,quantity,value,unit\n");
}

Report::~Report() {
  std::fclose(csv_);
}

void Report::figure(const std::string& phase, const std::string& subject, const std::string& who,
                    const std::string& quantity, double value, const std::string& unit) {
  std::fprintf(csv_, "%s,%s,%s,%s,%.6g,%s\n", phase.c_str(), subject.c_str(), who.c_str(), quantity.c_str(),
               value, unit.c_str());
  std::fflush(csv_);
}

void Report::time(const std::string& phase, const std::string& subject, const std::string& who,
                  const std::vector<Seconds>& samples) {
  const Seconds middle = median(samples);
  figure(phase, subject, who, "cpu", middle.cpu, "s");
  figure(phase, subject, who, "wall", middle.wall, "s");
  figure(phase, subject, who, "samples", static_cast<double>(samples.size()), "");
}

void Report::ratio(const std::string& phase, const std::string& size, double value) {
  char line[128];
  std::snprintf(line, sizeof line, "ratio %s %s %.2f", phase.c_str(), size.c_str(), value);
  ratios_.push_back(line);
  figure("ratio", size, "tornwalzen", phase, value, "");
}

void Report::printRatios() const {
  for (const std::string& line : ratios_) std::printf("%s\n", line.c_str());
}

std::string sizeName(std::int32_t count) {
  if (count % 1000000 == 0) return std::to_string(count / 1000000) + "M";
  if (count % 1000 == 0) return std::to_string(count / 1000) + "k";
  return std::to_string(count);
}

}  // namespace bench
