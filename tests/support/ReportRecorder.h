#pragma once

#include <cstdint>
#include <deque>
#include <ostream>
#include <string>
#include <vector>

#include "foundation/ReportHooks.h"

namespace vm {

// A box as the user would have seen it.
struct ShownBox {
  std::string text;
  std::string title;
  uint32_t style;

  bool operator==(const ShownBox&) const = default;
};

std::ostream& operator<<(std::ostream& out, const ShownBox& box);

// While one exists, reports are recorded and answered instead of shown. Recorders nest; the
// youngest one is in force. Outside of any recorder a report fails the running test.
//
//   ReportRecorder reports;
//   file.Close();
//   EXPECT_EQ(reports.Lines(), Reports({"CP_File(256) : IsOpen()", "CP_File(268) : result ==
//   true"}));
class ReportRecorder {
 public:
  ReportRecorder();
  ReportRecorder(const ReportRecorder&) = delete;
  ReportRecorder& operator=(const ReportRecorder&) = delete;
  ~ReportRecorder();

  // Answers the boxes to come, one each, with OK (kReportAnswerOk) or Cancel (kReportAnswerCancel).
  // When none is left, a box is answered with OK.
  void Answer(int32_t answer) { mAnswers.push_back(answer); }

  // What went to the debugger, in order: "file(line) : condition" for each assertion, "file(line) :
  // text" for each reported exception.
  const std::vector<std::string>& Lines() const { return mLines; }
  const std::vector<ShownBox>& Boxes() const { return mBoxes; }
  int32_t Breaks() const { return mBreaks; }
  int32_t MenuUpdates() const { return mMenuUpdates; }

  bool Empty() const { return mLines.empty() && mBoxes.empty(); }
  // Forgets what was recorded; keeps the answers.
  void Clear();

 private:
  static int32_t ShowBox(const char* text, const char* title, uint32_t style);
  static void WriteLine(const char* line);
  static void Break();
  static void UpdateMenus();

  static ReportRecorder* sCurrent;

  ReportRecorder* mPrevious;
  ReportHooks mPreviousHooks;
  std::deque<int32_t> mAnswers;
  std::vector<std::string> mLines;
  std::vector<ShownBox> mBoxes;
  int32_t mBreaks = 0;
  int32_t mMenuUpdates = 0;
};

// Spells the expected value of `ReportRecorder::Lines`.
using Reports = std::vector<std::string>;

}  // namespace vm
