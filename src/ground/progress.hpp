// The progress channel, as the library's own routines use it. The functions themselves are exported and
// declared in tornwalzen.h: inipgr, progre, proinf, procpu.
#pragma once

#include "ground/array_view.hpp"
#include "tornwalzen.h"

namespace tornwalzen {

constexpr int timeTextLength =
    48;  // "TIME: ", up to 18 digits of minutes, "min ", two of seconds, "s", zero byte

/// The text that procpu hands to the host: "TIME: 59sec" below a minute, else "TIME: 1min 1s".
/// out: at least timeTextLength characters, zero-terminated on return. milliseconds: in, >= 0.
void processorTimeText(char* out, Int64 milliseconds);

/// No handler, no open scale: the state after loading.
void resetProgress();

}  // namespace tornwalzen
