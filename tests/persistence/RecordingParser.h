#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "persistence/ByteStream.h"

// A parser that writes down which operations it is given, one line each: "SInt32 5 Name", "Float
// 0.5 element" (not named), "String \"x\"" (named, without a name), "break", "soft break", "indent
// 1", "open ( Name", "separator", "close )".
class RecordingParser : public ZvParser {
 public:
  RecordingParser() : ZvParser(nullptr) {}

  const std::vector<std::string>& Lines() const { return mLines; }

  void WriteBool(bool value, const char* name, bool named) override {
    Add("Bool " + std::string(value ? "true" : "false"), name, named);
  }
  void WriteSInt8(int8_t value, const char* name, bool named) override {
    AddNumber("SInt8 ", value, name, named);
  }
  void WriteUInt8(uint8_t value, const char* name, bool named) override {
    AddNumber("UInt8 ", value, name, named);
  }
  void WriteSInt16(int16_t value, const char* name, bool named) override {
    AddNumber("SInt16 ", value, name, named);
  }
  void WriteUInt16(uint16_t value, const char* name, bool named) override {
    AddNumber("UInt16 ", value, name, named);
  }
  void WriteSInt32(int32_t value, const char* name, bool named) override {
    AddNumber("SInt32 ", value, name, named);
  }
  void WriteUInt32(uint32_t value, const char* name, bool named) override {
    AddNumber("UInt32 ", value, name, named);
  }
  void WriteFloat(float value, const char* name, bool named) override {
    Add("Float " + Real(static_cast<double>(value)), name, named);
  }
  void WriteDouble(double value, const char* name, bool named) override {
    Add("Double " + Real(value), name, named);
  }
  void WriteString(const ZvString& value, const char* name, bool named) override {
    Add("String \"" + std::string(value.view()) + '"', name, named);
  }
  void WriteFourCC(uint32_t value, const char* name, bool named) override {
    AddNumber("FourCC ", value, name, named);
  }

  void WriteLineBreak() override { mLines.emplace_back("break"); }
  void WriteSoftBreak() override { mLines.emplace_back("soft break"); }
  void Indent(int32_t delta) override { mLines.push_back("indent " + std::to_string(delta)); }
  void WriteOpen(const char* name, char bracket) override {
    Add(std::string("open ") + bracket, name, true);
  }
  void WriteSeparator() override { mLines.emplace_back("separator"); }
  void WriteClose(char bracket) override { mLines.push_back(std::string("close ") + bracket); }

 private:
  static std::string Real(double value) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.9g", value);
    return text;
  }
  template <class T>
  void AddNumber(const char* kind, T value, const char* name, bool named) {
    Add(kind + std::to_string(value), name, named);
  }
  void Add(std::string line, const char* name, bool named) {
    if (name != nullptr) {
      line += std::string(" ") + name;
    }
    if (!named) {
      line += " element";
    }
    mLines.push_back(line);
  }

  std::vector<std::string> mLines;
};

// A stream whose operations are recorded.
class RecordingStream : public ByteStream {
 public:
  RecordingStream() : mRecorder(ZvSmartPtr<RecordingParser>::Adopt(new RecordingParser)) {
    AttachParser(mRecorder.Get());
  }
  const std::vector<std::string>& Lines() const { return mRecorder->Lines(); }

 private:
  ZvSmartPtr<RecordingParser> mRecorder;
};
