#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/ZvSmartPtr.h"
#include "persistence/members/ZvStreamingMember.h"
#include "persistence/members/ZvValueForms.h"
#include "persistence/ZvStreamable.h"

// Members that hold lists and objects. Each is streamed as a block: the field's name on a line of
// its own, then the items between '{' and '}'. Their fields are set by ReadValue; ParseValue has no
// meaning for them and reports "0".

namespace vm {

// The lines that identify the checks of the classes below, which all report in
// `ZvStreamingObjectList`.
inline constexpr int16_t kLineNoListObject = 53;
inline constexpr int16_t kLineParseObjectList = 89;
inline constexpr int16_t kLineNoPointerObject = 122;
inline constexpr int16_t kLineParsePointer = 144;
inline constexpr int16_t kLineStructName = 196;
inline constexpr int16_t kLineParseStructList = 209;
inline constexpr int16_t kLineParseFieldList = 283;

void WriteBlockBegin(ZvStream& stream, const ZvString& fieldName);
void WriteBlockEnd(ZvStream& stream);
// The class name and the object, on a line of its own.
void WriteBlockObject(ZvStream& stream, ZvStreamable& object);
void ReportListParse(int16_t line);
void CheckStructName(const ZvString& read, const char* expected);

// Calls `take` with each string of a block that isn't empty.
template <class Take>
void ReadBlock(ZvStream& stream, Take take) {
  stream.ReadOpen();
  while (!stream.ReadClose()) {
    ZvString text;
    stream.ReadString(text);
    if (!text.empty()) {
      take(text);
    }
  }
}

// Makes and reads the object of that class and gives it, at count 1, if it is a T; otherwise null.
// Reports "object != NULL" at `line` when there is no such class.
template <class T>
T* ReadBlockObject(ZvStream& stream, const ZvString& className, int16_t line) {
  ZvStreamable* object =
      stream.GetParser()->ReadObjectOfClass(className, "ZvStreamingObjectList", line);
  T* wanted = dynamic_cast<T*>(object);
  if (wanted == nullptr) {
    delete object;
  }
  return wanted;
}

}  // namespace vm

// A list of counted objects of class T; L is a vector of ZvSmartPtr<T>. Null entries are not
// written. REQUIRED: an empty list writes nothing at all, even with mAlwaysWrite set.
template <class L, class T>
class ZvStreamingObjectList : public ZvStreamingMemberVtable {
 public:
  ZvStreamingObjectList(ZvSleekStreaming* owner, const char* fieldName)
      : ZvStreamingMemberVtable(owner, fieldName, kTagObjectList) {}
  // The copy shares the objects.
  ZvStreamingObjectList& operator=(const ZvStreamingObjectList&) = default;

  void WriteValue(ZvStream& stream) override {
    if (mValue.empty()) {
      return;
    }
    vm::WriteBlockBegin(stream, FieldName);
    for (const ZvSmartPtr<T>& item : mValue) {
      if (item) {
        vm::WriteBlockObject(stream, *item.Get());
      }
    }
    vm::WriteBlockEnd(stream);
  }
  void ParseValue(ZvParser& /*parser*/, const ZvString& /*text*/) override {
    vm::ReportListParse(vm::kLineParseObjectList);
  }
  // Adds to what is in the list. Objects of another class are dropped.
  void ReadValue(ZvStream& stream) override {
    vm::ReadBlock(stream, [&](const ZvString& className) {
      if (T* object = vm::ReadBlockObject<T>(stream, className, vm::kLineNoListObject)) {
        mValue.push_back(ZvSmartPtr<T>::Adopt(object));
      }
    });
  }
  bool IsDefault() const override { return mValue.empty() && !mAlwaysWrite; }

  L mValue;
};

// One counted object of class T, or none. The member is the handle.
template <class T>
class ZvStreamingSmartPtr : public ZvStreamingMemberVtable, public ZvSmartPtr<T> {
 public:
  ZvStreamingSmartPtr(ZvSleekStreaming* owner, const char* fieldName)
      : ZvStreamingMemberVtable(owner, fieldName, kTagSmartPtr) {}
  // The copy shares the object.
  ZvStreamingSmartPtr& operator=(const ZvStreamingSmartPtr&) = default;
  using ZvSmartPtr<T>::operator=;

  void WriteValue(ZvStream& stream) override {
    if (this->Get() != nullptr) {
      vm::WriteBlockBegin(stream, FieldName);
      vm::WriteBlockObject(stream, *this->Get());
      vm::WriteBlockEnd(stream);
    }
  }
  void ParseValue(ZvParser& /*parser*/, const ZvString& /*text*/) override {
    vm::ReportListParse(vm::kLineParsePointer);
  }
  // The last object of the block stays. Objects of another class are dropped.
  void ReadValue(ZvStream& stream) override {
    vm::ReadBlock(stream, [&](const ZvString& className) {
      if (T* object = vm::ReadBlockObject<T>(stream, className, vm::kLineNoPointerObject)) {
        this->TakeOver(object);
      }
    });
  }
  bool IsDefault() const override { return this->Get() == nullptr && !mAlwaysWrite; }
};

// A list of plain values, up to eight on a line. V is a vector of T; T has a TupleForm or a
// ValueForm.
template <class V, class T>
class ZvStreamingFieldList : public ZvStreamingMemberVtable {
 public:
  ZvStreamingFieldList(ZvSleekStreaming* owner, const char* fieldName)
      : ZvStreamingMemberVtable(owner, fieldName, kTagStructList) {}
  ZvStreamingFieldList& operator=(const ZvStreamingFieldList&) = default;

  // REQUIRED: an empty list writes nothing, even with mAlwaysWrite set.
  void WriteValue(ZvStream& stream) override {
    if (mValue.empty()) {
      return;
    }
    vm::WriteBlockBegin(stream, FieldName);
    std::size_t index = 0;
    for (const T& value : mValue) {
      if (index != 0) {
        stream.WriteSeparator();
      }
      if (index % kValuesOnALine == 0) {
        stream.WriteLineBreak();
      }
      WriteElement(stream, value);
      ++index;
    }
    vm::WriteBlockEnd(stream);
  }
  void ParseValue(ZvParser& /*parser*/, const ZvString& /*text*/) override {
    vm::ReportListParse(vm::kLineParseFieldList);
  }
  // Replaces what is in the list.
  void ReadValue(ZvStream& stream) override {
    mValue.clear();
    ZvParser& parser = *stream.GetParser();
    vm::ReadBlock(stream, [&](ZvString& text) {
      parser.ResolveVariable(text);
      T value{};
      if constexpr (vm::HasTupleForm<T>) {
        vm::ParseTuple(parser, value, text);
      } else {
        vm::ParseValue(parser, value, text);
      }
      mValue.push_back(value);
    });
  }
  bool IsDefault() const override { return mValue.empty() && !mAlwaysWrite; }

  V mValue;

 private:
  static constexpr std::size_t kValuesOnALine = 8;

  static void WriteElement(ZvStream& stream, const T& value) {
    if constexpr (vm::HasTupleForm<T>) {
      vm::WriteTuple(stream, value, nullptr);
    } else {
      vm::WriteValue(stream, value, nullptr, false);
    }
  }
};

// A list of records. V is a vector of T; T has
//   static constexpr char kName[];          the name that stands in front of each record
//   void WriteTo(ZvStream& stream) const;
//   void ReadFrom(ZvStream& stream);
template <class V, class T>
class ZvStreamingStructList : public ZvStreamingMemberVtable {
 public:
  ZvStreamingStructList(ZvSleekStreaming* owner, const char* fieldName)
      : ZvStreamingMemberVtable(owner, fieldName, kTagStructList) {}
  ZvStreamingStructList& operator=(const ZvStreamingStructList&) = default;

  // Writes an empty block for an empty list with mAlwaysWrite set.
  void WriteValue(ZvStream& stream) override {
    if (mValue.empty() && !mAlwaysWrite) {
      return;
    }
    vm::WriteBlockBegin(stream, FieldName);
    for (const T& record : mValue) {
      stream.WriteLineBreak();
      stream.WriteString(T::kName, nullptr, true);
      record.WriteTo(stream);
    }
    vm::WriteBlockEnd(stream);
  }
  void ParseValue(ZvParser& /*parser*/, const ZvString& /*text*/) override {
    vm::ReportListParse(vm::kLineParseStructList);
  }
  // Replaces what is in the list. A record under another name is reported and read all the same.
  void ReadValue(ZvStream& stream) override {
    mValue.clear();
    vm::ReadBlock(stream, [&](const ZvString& name) {
      vm::CheckStructName(name, T::kName);
      T record{};
      record.ReadFrom(stream);
      mValue.push_back(record);
    });
  }
  bool IsDefault() const override { return mValue.empty() && !mAlwaysWrite; }

  V mValue;
};

// Points are so plain that they stand in their list as values, without a name each.
template <class V>
class ZvStreamingStructList<V, ZvDPoint2d> : public ZvStreamingFieldList<V, ZvDPoint2d> {
 public:
  using ZvStreamingFieldList<V, ZvDPoint2d>::ZvStreamingFieldList;
};
