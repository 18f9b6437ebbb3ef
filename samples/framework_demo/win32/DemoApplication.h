#pragma once

#include <list>
#include <memory>

#include "framework_demo/DemoDocument.h"
#include "framework_demo/win32/DemoWindow.h"
#include "platform/CP_Application.h"

class DemoApplication : public CP_Application {
 public:
  DemoApplication();
  ~DemoApplication() override;

  void StartUp() override;
  int32_t HandleCommand(int32_t inCommandNumber) override;
  void UpdateCommandState(int32_t inCommandNumber) override;
  void ShowInformation() override;
  void OnBecomeTarget() override;

 private:
  CP_WindowList mDesktop;
  std::list<CP_M_Idler*> mIdlers;
  std::unique_ptr<DemoDocument> mDocument;
  std::unique_ptr<DemoWindow> mWindow;
};
