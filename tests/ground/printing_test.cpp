// What reaches standard output: the first 80 characters of a message and a newline, at once.
#include <gtest/gtest.h>

#include <string>

#include "ground/messages.hpp"
#include "host_kit/default_run.hpp"
#include "tornwalzen.h"

namespace {

using namespace tornwalzen;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

std::string printed(const std::string& text, int32_t length = 0) {
  CaptureStdout();
  prttxt(text.c_str(), length);
  return GetCapturedStdout();
}

TEST(Printing, ABlankPaddedMessageIsCutToEightyCharactersWithItsBlanks) {
  MessageLine line;
  line.text("NEWTON @");
  CaptureStdout();
  printMessage(run, line);
  EXPECT_EQ(GetCapturedStdout(), "NEWTON @" + std::string(72, ' ') + "\n");
}

TEST(Printing, WhatStandsBehindCharacterEightyIsNotPrinted) {
  EXPECT_EQ(printed(std::string(80, 'a') + "b"), std::string(80, 'a') + "\n");
  EXPECT_EQ(printed(std::string(80, 'a')), std::string(80, 'a') + "\n");
  EXPECT_EQ(printed(std::string(79, 'a')), std::string(79, 'a') + "\n");
}

TEST(Printing, AZeroByteBeforeCharacterEightyEndsTheText) {
  EXPECT_EQ(printed("kurz"), "kurz\n");
  MessageLine line;
  line.text("ab").nul().text("cd");
  CaptureStdout();
  printMessage(run, line);
  EXPECT_EQ(GetCapturedStdout(), "ab\n");
}

TEST(Printing, AnEmptyTextIsAnEmptyLine) {
  EXPECT_EQ(printed(""), "\n");
}

TEST(Printing, TheLengthIsNotUsed) {
  EXPECT_EQ(printed("Fortschritt", 3), "Fortschritt\n");
  EXPECT_EQ(printed("Fortschritt", 128), "Fortschritt\n");
}

TEST(Printing, PercentSignsAreNoFormats) {
  EXPECT_EQ(printed("50 %% %s %n"), "50 %% %s %n\n");
}

TEST(Printing, AnAbsentTextPrintsNothing) {
  CaptureStdout();
  prttxt(nullptr, 0);
  EXPECT_EQ(GetCapturedStdout(), "");
}

TEST(Printing, TheMessageStaysInTheRunState) {
  MessageLine line;
  line.text("FATALER FEHLER @");
  CaptureStdout();
  printMessage(run, line);
  GetCapturedStdout();
  EXPECT_EQ(std::string(run.messages.MSGSTR, messageLength), "FATALER FEHLER @" + std::string(112, ' '));
}

TEST(Printing, TheFatalTextOfTheSolverIsKeptAndNotPrinted) {
  run.ierrso = 0;
  CaptureStdout();
  failSolver(run, "FATALER FEHLER : mnsysm zu klein @");
  EXPECT_EQ(GetCapturedStdout(), "");
  std::string kept = "FATALER FEHLER : mnsysm zu klein @";
  kept.resize(messageLength, ' ');
  EXPECT_EQ(std::string(run.messages.MSGSTR_solver, messageLength), kept);
  EXPECT_EQ(run.ierrso, -1);
  EXPECT_TRUE(failed(run.ierrso));
  run.ierrso = 0;
}

TEST(Printing, PrterrDoesNothing) {
  CaptureStdout();
  prterr();
  EXPECT_EQ(GetCapturedStdout(), "");
}

}  // namespace
