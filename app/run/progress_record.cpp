// What the progress handler was told; see the header.
#include "run/progress_record.hpp"

#include <string_view>

namespace host {

void ProgressRecord::take(const TornwalzenProgress& record) {
  if (record.kind == 0) {
    fraction_ = record.value;
    return;
  }
  const std::string_view text = record.text;
  // each increment announces itself by this information line, directly behind its fraction
  if (text.find("Inverse Projektion") != std::string_view::npos) {
    if (phase_ == RunPhase::development) developed_ = std::chrono::steady_clock::now();
    phase_ = RunPhase::increments;
    ++steps_;
  }
}

}  // namespace host
