#include "framework_demo/DemoDocument.h"

#include <cstring>

#include "framework_demo/DemoCommands.h"
#include "framework_demo/Trace.h"
#include "platform/CP_Clipboard.h"
#include "platform/CP_ColorDialog.h"
#include "platform/CP_Constants.h"
#include "platform/CP_Globals.h"
#include "platform/CP_HandleBlock.h"
#include "platform/CP_MenuBar.h"
#include "platform/os/Clipboard.h"

namespace {

// The system's number for text that ends in a NUL.
constexpr uint32_t kTextFormat = 1;

}  // namespace

int32_t DemoDocument::HandleCommand(int32_t inCommandNumber) {
  switch (inCommandNumber) {
    case DEMO_COPY:
      Copy();
      break;
    case DEMO_PASTE:
      Paste();
      break;
    case DEMO_NEW:
    case DEMO_CLEAR:
      mText.clear();
      break;
    case DEMO_ZOOM_NORMAL:
      mZoom = 1;
      break;
    case DEMO_ZOOM_DOUBLE:
      mZoom = 2;
      break;
    case DEMO_COLOR_CHOOSE:
      ChooseColor();
      break;
    case DEMO_COLOR_BLACK:
      mColor = kCP_Black;
      break;
    default:
      return CP_M_Commander::HandleCommand(inCommandNumber);
  }
  demo::Trace("document: command %d, text \"%s\", zoom %d, colour %d %d %d",
              static_cast<int>(inCommandNumber), mText.c_str(), static_cast<int>(mZoom),
              mColor.GetRed(), mColor.GetGreen(), mColor.GetBlue());
  return 0;
}

void DemoDocument::UpdateCommandState(int32_t inCommandNumber) {
  if (CanDo(inCommandNumber)) {
    gMenuBar->EnableCommand(inCommandNumber);
  } else {
    CP_M_Commander::UpdateCommandState(inCommandNumber);
  }
}

bool DemoDocument::CanDo(int32_t inCommandNumber) const {
  switch (inCommandNumber) {
    case DEMO_COPY:
    case DEMO_CLEAR:
      return !mText.empty();
    case DEMO_PASTE:
      return os::IsClipboardFormatThere(kTextFormat);
    case DEMO_COLOR_BLACK:
      return !(mColor == kCP_Black);
    case DEMO_NEW:
    case DEMO_ZOOM:  // the entry that the submenu hangs at is a command too
    case DEMO_COLOR:
    case DEMO_COLOR_CHOOSE:
      return true;
    case DEMO_ZOOM_NORMAL:
      return mZoom != 1;
    case DEMO_ZOOM_DOUBLE:
      return mZoom != 2;
    default:
      return false;
  }
}

void DemoDocument::Copy() const {
  const size_t size = mText.size() + 1;
  CP_HandleBlock* const block = new CP_HandleBlock(static_cast<int32_t>(size));
  std::memcpy(block->GetPointer(), mText.c_str(), size);
  gClipboard->PutData(kTextFormat, *block);
  block->Release();
}

void DemoDocument::Paste() {
  CP_HandleBlock* const block = gClipboard->GetData(kTextFormat);
  if (block == nullptr) {
    demo::Trace("document: nothing to paste");
    return;
  }
  const char* const text = static_cast<const char*>(block->GetPointer());
  if (text != nullptr)
    mText.assign(text, strnlen(text, static_cast<size_t>(block->GetSize())));
  block->Release();
}

void DemoDocument::ChooseColor() {
  CP_RGBColor chosen;
  if (ChooseColorDialog("Select Color", mColor, chosen))
    mColor = chosen;
}

bool DemoDocument::InputHook(uint32_t inCharacter, uint32_t) {
  constexpr uint32_t kBackspace = 8;
  if (inCharacter == kBackspace) {
    if (!mText.empty())
      mText.pop_back();
  } else if (inCharacter >= ' ' && inCharacter < 256) {
    mText += static_cast<char>(inCharacter);
  }
  demo::Trace("document: text \"%s\"", mText.c_str());
  return true;
}

void DemoDocument::OnBecomeTarget() {
  demo::Trace("document: is the target");
}

void DemoDocument::OnLoseTarget() {
  demo::Trace("document: lost the target");
}
