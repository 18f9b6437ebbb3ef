// One document of the image editor with one filter at work on it: the record that both share, every
// callback in it, and the order of the selectors.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "filter_host/DescriptorSuite.h"
#include "filter_host/HandleTable.h"
#include "filter_host/HostPlanes.h"
#include "filter_host/PiplResource.h"
#include "filter_host/PixelMap.h"
#include "host/FilterRecord.h"

namespace filter_host {

// The user's selection: coverage of every pixel of the image, 255 selected.
struct Selection {
  std::vector<uint8_t> coverage;
  // The area that the host calls `filterRect`; the mask that a filter gets has its size.
  Rect bounds{};
};

// The smallest rectangle with all pixels that are at least partly selected; empty when none is.
Rect BoundsOfCoverage(std::span<const uint8_t> coverage, int32_t width, int32_t height);

struct SessionSettings {
  // Filter case 1 to 7; 0 takes the one that alpha and selection call for.
  int16_t filterCase = 0;
  int16_t playInfo = plugInDialogDisplay;
  // Number that stands in the record instead of the format's own.
  std::optional<int16_t> imageMode;
  // Bytes behind the pixels of each delivered row.
  int32_t rowPadding = 16;
  // Callbacks that this host has not got; for trying what a filter does then.
  bool withoutAbort = false;
  bool withoutProgress = false;
  bool withoutAdvance = false;
  bool withoutDisplay = false;
  bool withoutHandles = false;
  bool withoutDescriptors = false;
  // The advanceState calls, counted from 1, which fail, and with what.
  int failAdvanceFirst = 0;
  int failAdvanceLast = 0;
  OSErr failAdvanceWith = memFullErr;
  // abortProc says yes from then on.
  std::optional<std::chrono::milliseconds> abortAfter;
  // Recorded parameters, in their text form; empty for none.
  std::string replay;
  // What the colour picker answers; without it the user cancels.
  std::optional<std::array<int16_t, 3>> pickedColour;
  std::array<uint16_t, 3> foreground{0, 0, 0};
  std::array<uint16_t, 3> background{65535, 65535, 65535};
  // First word is the owner window on Windows. May be null.
  void* platformData = nullptr;
};

// What became of a run.
struct RunOutcome {
  // Selector whose result wasn't 0, or that faulted; -1 when all went well.
  int16_t failedSelector = -1;
  int16_t result = noErr;
  std::string fault;        // what left the filter instead of a result; empty for none
  std::string errorString;  // what the filter left to be shown
  bool Succeeded() const { return failedSelector < 0; }
};

// Things that a filter should not do, as lines; what the host saw of them.
using Warnings = std::vector<std::string>;

class HostSession {
 public:
  // Called with one line for each step; may be empty.
  using Log = std::function<void(const std::string&)>;
  // Runs the call into the filter. Gives what left the filter instead of returning, empty for
  // nothing; the platform's part catches what the platform throws.
  using Guard = std::function<std::string(const std::function<void()>&)>;
  // Paints delivered pixels, 4 bytes each (blue, green, red, 0), at a place of the platform's
  // drawing context. May be empty.
  using Painter = std::function<void(const PaintedArea&, void* platformContext)>;

  // `caseInfo` is what the filter's resource says about the filter case at hand.
  HostSession(HostPlanes image, std::optional<Selection> selection, SessionSettings settings,
              std::optional<FilterCaseInfo> caseInfo);
  ~HostSession();
  HostSession(const HostSession&) = delete;
  HostSession& operator=(const HostSession&) = delete;

  void SetLog(Log log) { mLog = std::move(log); }
  void SetGuard(Guard guard) { mGuard = std::move(guard); }
  void SetPainter(Painter painter) { mPainter = std::move(painter); }

  // The filter case for an image and a selection: 1, 2, 4 or 5.
  static int16_t NaturalFilterCase(const PlaneFormat& format, bool hasSelection);

  // Calls the selectors in their order: Parameters (when `askParameters`), Prepare, Start, Continue
  // while a rectangle isn't empty, Finish. Callbacks reach this session until it returns; sessions
  // can't run inside each other.
  RunOutcome Run(PlugInEntryPoint entry, bool askParameters);
  // Any one selector with this session's record.
  RunOutcome Call(PlugInEntryPoint entry, int16_t selector);

  FilterRecord& Record() { return mRecord; }
  const HostPlanes& Source() const { return mSource; }
  // The image as it is after what the filter wrote, restricted to the selection where the host does
  // that, and with the old alpha where transparency is protected.
  HostPlanes Result() const;
  // The parameters that stand in the record now, in text form; empty when there are none.
  std::string RecordedDescriptor() const;
  Warnings CollectWarnings() const;

  int AdvanceCalls() const { return mAdvanceCalls; }
  int ProgressCalls() const { return mProgressCalls; }
  int DisplayCalls() const { return mDisplayCalls; }

 private:
  friend struct HostCallbacks;

  // A rectangle of planes as it was delivered.
  struct Delivery {
    Rect rect{};
    int32_t loPlane = 0;
    int32_t hiPlane = -1;
    int32_t rowBytes = 0;
    std::size_t packedRowBytes = 0;
    std::vector<uint8_t> bytes;
    bool Empty() const { return bytes.empty(); }
  };

  void FillRecord();
  OSErr AdvanceState();
  OSErr Deliver(const HostPlanes& from, const Rect& rect, int16_t loPlane, int16_t hiPlane,
                int16_t padding, Delivery& delivery);
  OSErr DeliverMask();
  void TakeBackOutput();
  OSErr ColourServices(ColorServicesInfo& info);
  OSErr DisplayPixels(const PSPixelMap* map, const VRect* area, int32_t row, int32_t column,
                      void* context);
  void Note(const std::string& line) const;
  std::string CallGuarded(const std::function<void()>& call) const;

  HostPlanes mSource;  // what the filter is given
  HostPlanes mInput;   // mSource, with the matte that the filter asked for
  HostPlanes mResult;  // what the filter made of it
  std::optional<Selection> mSelection;
  SessionSettings mSettings;
  FilterCaseInfo mCaseInfo;

  HandleTable mHandles;
  DescriptorSuite mDescriptors;
  FilterRecord mRecord{};
  intptr_t mFilterData = 0;
  HandleProcs mHandleProcs{};
  WriteDescriptorProcs mWriteProcs{};
  ReadDescriptorProcs mReadProcs{};
  PIDescriptorParameters mDescriptorParameters{};
  Str255 mErrorString{};

  Delivery mIn;
  Delivery mOut;
  Rect mMaskRect{};
  std::vector<uint8_t> mMask;

  Log mLog;
  Guard mGuard;
  Painter mPainter;
  std::chrono::steady_clock::time_point mStarted = std::chrono::steady_clock::now();
  int mAdvanceCalls = 0;
  int mProgressCalls = 0;
  int mDisplayCalls = 0;
  int32_t mRowOverruns = 0;
  int32_t mTailOverruns = 0;
};

// The published name of a selector, "Start" and the like.
std::string SelectorName(int16_t selector);
// What a filter's result means, in a few words: "cancelled", "out of memory", ...
std::string DescribeResult(int16_t result);

}  // namespace filter_host
