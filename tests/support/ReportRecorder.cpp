#include "support/ReportRecorder.h"

#include <utility>

namespace vm {

ReportRecorder* ReportRecorder::sCurrent = nullptr;

std::ostream& operator<<(std::ostream& out, const ShownBox& box) {
  out << '[' << box.title << ", style " << box.style << "] ";
  for (const char c : box.text) {
    if (c == '\r') {
      out << "\\r";
    } else {
      out << c;
    }
  }
  return out;
}

ReportRecorder::ReportRecorder()
    : mPrevious(std::exchange(sCurrent, this)),
      mPreviousHooks(std::exchange(CurrentReportHooks(),
                                   ReportHooks{ShowBox, WriteLine, Break, UpdateMenus})) {}

ReportRecorder::~ReportRecorder() {
  CurrentReportHooks() = mPreviousHooks;
  sCurrent = mPrevious;
}

void ReportRecorder::Clear() {
  mLines.clear();
  mBoxes.clear();
  mBreaks = 0;
  mMenuUpdates = 0;
}

int32_t ReportRecorder::ShowBox(const char* text, const char* title, uint32_t style) {
  sCurrent->mBoxes.push_back({text, title, style});
  if (sCurrent->mAnswers.empty())
    return kReportAnswerOk;
  const int32_t answer = sCurrent->mAnswers.front();
  sCurrent->mAnswers.pop_front();
  return answer;
}

void ReportRecorder::WriteLine(const char* line) {
  sCurrent->mLines.emplace_back(line);
}

void ReportRecorder::Break() {
  ++sCurrent->mBreaks;
}

void ReportRecorder::UpdateMenus() {
  ++sCurrent->mMenuUpdates;
}

}  // namespace vm
