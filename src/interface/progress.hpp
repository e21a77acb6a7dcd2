// The progress channel, as the library's own routines use it. The functions themselves are exported and
// declared in tornwalzen.h: inipgr, progre, proinf, procpu.
#pragma once

#include "tornwalzen.h"
