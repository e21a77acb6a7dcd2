// What a handle of tornwalzen_analysis.h points to.
#pragma once

#include "interface/own_analysis.hpp"
#include "interface/settings.hpp"
#include "tornwalzen_analysis.h"

/// What a handle points to.
struct TornwalzenAnalysis {
  tornwalzen::OwnAnalysis own;
  TornwalzenStepHandler stepHandler = nullptr;
  void* stepData = nullptr;
  TornwalzenMessageHandler messageHandler = nullptr;
  void* messageData = nullptr;
};

/// 0 for a handle that may be changed now.
inline tornwalzen::Int refuseChange(TornwalzenAnalysis* analysis) {
  if (analysis == nullptr) return TORNWALZEN_NULL_POINTER;
  return tornwalzen::refuseWhileRunning(analysis->own.run);
}

/// 0 where the press model is not chosen or has all that it needs to run.
tornwalzen::Int refusePress(tornwalzen::OwnAnalysis& own);
