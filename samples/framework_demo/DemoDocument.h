#pragma once

#include <string>

#include "platform/CP_M_Commander.h"
#include "platform/CP_RGBColor.h"

// A line of text with a colour and a size: the commander that the commands of the Edit and View
// menus are for. What it doesn't know goes up to the application.
class DemoDocument : public CP_M_Commander {
 public:
  explicit DemoDocument(CP_M_Commander* inSuperCommander) : CP_M_Commander(inSuperCommander) {}

  const std::string& GetText() const { return mText; }
  const CP_RGBColor& GetColor() const { return mColor; }
  int32_t GetZoom() const { return mZoom; }

  int32_t HandleCommand(int32_t inCommandNumber) override;
  void UpdateCommandState(int32_t inCommandNumber) override;

  // A typed character; backspace takes one away.
  bool InputHook(uint32_t inCharacter, uint32_t inKeyData) override;

  void OnBecomeTarget() override;
  void OnLoseTarget() override;

 private:
  bool CanDo(int32_t inCommandNumber) const;
  void Copy() const;
  void Paste();
  void ChooseColor();

  std::string mText;
  CP_RGBColor mColor;
  int32_t mZoom = 1;
};
