#include "filter_host/Descriptor.h"

#include <gtest/gtest.h>

#include "filter_host/DescriptorSuite.h"
#include "filter_host/HandleTable.h"
#include "filter_host/Picture.h"
#include "foundation/FourCharCode.h"

using namespace filter_host;

namespace {

std::string ParseError(const std::string& text) {
  try {
    ParseDescriptor(text, "x");
  } catch (const Error& error) {
    return error.what();
  }
  return "no error";
}

DescriptorEntry String(uint32_t key, std::string bytes) {
  DescriptorEntry entry;
  entry.key = key;
  entry.type = DescriptorType::kString;
  entry.bytes = std::move(bytes);
  return entry;
}

}  // namespace

TEST(DescriptorText, WritesOneLineForEachEntry) {
  DescriptorEntry size;
  size.key = FourCC("aeCT");
  size.type = DescriptorType::kFloat;
  size.number = 61.0;
  EXPECT_EQ(FormatDescriptor(
                {String(FourCC("aeAU"), "Say \"hi\"\\"), size, String(0x61650001, {"\0\xFF", 2})}),
            "filter-descriptor 1\n"
            "'aeAU' string \"Say \\x22hi\\x22\\x5C\"\n"
            "'aeCT' float 61\n"
            "'ae\\x00\\x01' string \"\\x00\\xFF\"\n");
}

TEST(DescriptorText, ReadsEveryTypeBackAsItWas) {
  const std::string text =
      "filter-descriptor 1\n"
      "'int ' integer -2147483648\n"
      "'flt ' float 0.10000000000000001\n"
      "'unit' unit-float '#Pxl' 12.5\n"
      "'bool' boolean 1\n"
      "'text' text \"a long text\"\n"
      "'alis' alias \"\\x00\\x01\"\n"
      "'strg' string \"\"\n"
      "'enum' enumerated 'Ordn' 'Trgt'\n"
      "'clss' class 'Lyr '\n"
      "'scls' scoped-class 'Lyr '\n"
      "'objc' object 'RGBC' \"inner\"\n"
      "'sobj' scoped-object 'RGBC' \"inner\"\n"
      "'cont' count 4294967295\n";
  const Descriptor descriptor = ParseDescriptor(text, "x");
  ASSERT_EQ(descriptor.size(), 13u);
  EXPECT_EQ(descriptor[0].integer, INT32_MIN);
  EXPECT_EQ(descriptor[1].number, 0.1);
  EXPECT_EQ(descriptor[2].code, FourCC("#Pxl"));
  EXPECT_EQ(descriptor[7].value, FourCC("Trgt"));
  EXPECT_EQ(descriptor[12].value, 0xFFFFFFFFu);
  EXPECT_EQ(FormatDescriptor(descriptor), text);
}

TEST(DescriptorText, EveryByteSurvives) {
  std::string all;
  for (int i = 0; i < 255; ++i) {
    all += static_cast<char>(i);
  }
  const Descriptor descriptor = {String(0xFF00277Cu, all), String(FourCC("aeS["), "\xFF")};
  EXPECT_EQ(ParseDescriptor(FormatDescriptor(descriptor), "x"), descriptor);
}

TEST(DescriptorText, TakesCommentsEmptyLinesAndCarriageReturns) {
  EXPECT_EQ(
      ParseDescriptor("filter-descriptor 1\r\n\r\n# a remark\r\n'aeAU' string \"x\"\r\n", "x"),
      (Descriptor{String(FourCC("aeAU"), "x")}));
  EXPECT_TRUE(ParseDescriptor("filter-descriptor 1", "x").empty());
}

TEST(DescriptorText, SaysInWhichLineAnErrorIs) {
  EXPECT_EQ(ParseError(""), "x: the file is empty");
  EXPECT_EQ(ParseError("descriptor\n"), "x: the first line is not 'filter-descriptor 1'");
  const std::string head = "filter-descriptor 1\n\n";
  EXPECT_EQ(ParseError(head + "'aeA' string \"\"\n"), "x, line 3: a code has four characters");
  EXPECT_EQ(ParseError(head + "aeAU string \"\"\n"), "x, line 3: expected '");
  EXPECT_EQ(ParseError(head + "'aeAU\n"), "x, line 3: missing '");
  EXPECT_EQ(ParseError(head + "'aeAU' long 3\n"), "x, line 3: 'long' is no type");
  EXPECT_EQ(ParseError(head + "'aeAU'\n"), "x, line 3: the line ends too early");
  EXPECT_EQ(ParseError(head + "'aeAU' float 1x\n"), "x, line 3: '1x' is no number");
  EXPECT_EQ(ParseError(head + "'aeAU' boolean 2\n"), "x, line 3: '2' is no number between 0 and 1");
  EXPECT_EQ(ParseError(head + "'aeAU' string \"a\\n\"\n"),
            "x, line 3: a backslash is followed by x and two hexadecimal digits");
  EXPECT_EQ(ParseError(head + "'aeAU' string \"\\xG0\"\n"),
            "x, line 3: a backslash is followed by x and two hexadecimal digits");
  EXPECT_EQ(ParseError(head + "'aeAU' string \"" + std::string(256, 'a') + "\"\n"),
            "x, line 3: a string has 255 bytes at most");
  EXPECT_EQ(ParseError(head + "'aeAU' string \"a\" b\n"), "x, line 3: 'b' stands behind the value");
}

TEST(HandleTable, GivesZeroedMemoryThroughAPointerToAPointer) {
  HandleTable table;
  Handle handle = table.New(3);
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(std::string(*handle, 3), std::string(3, '\0'));
  EXPECT_EQ(table.Size(handle), 3);
  EXPECT_EQ(table.LiveCount(), 1u);
  table.Dispose(handle);
  EXPECT_EQ(table.LiveCount(), 0u);
  EXPECT_EQ(table.MisuseCount(), 0);
}

TEST(HandleTable, GrowsAndShrinksWithItsContents) {
  HandleTable table;
  Handle handle = table.New(std::string("abc"));
  EXPECT_EQ(table.SetSize(handle, 5), noErr);
  EXPECT_EQ(std::string(*handle, 5), std::string("abc\0\0", 5));
  EXPECT_EQ(table.SetSize(handle, 2), noErr);
  std::string bytes;
  EXPECT_TRUE(table.Contents(handle, &bytes));
  EXPECT_EQ(bytes, "ab");
  EXPECT_EQ(table.SetSize(handle, -1), memFullErr);
}

TEST(HandleTable, ALockedHandleStaysInPlaceAndKeepsItsSize) {
  HandleTable table;
  Handle handle = table.New(4);
  char* block = table.Lock(handle);
  EXPECT_EQ(block, *handle);
  EXPECT_EQ(table.SetSize(handle, 4000), memFullErr);
  EXPECT_EQ(*handle, block);
  table.Unlock(handle);
  EXPECT_EQ(table.SetSize(handle, 4000), noErr);
}

TEST(HandleTable, WhatIsNoHandleIsCountedAndNotFollowed) {
  HandleTable table;
  char* block = nullptr;
  EXPECT_EQ(table.Size(&block), -1);
  EXPECT_EQ(table.Lock(nullptr), nullptr);
  EXPECT_EQ(table.SetSize(&block, 1), -109);
  table.Dispose(&block);
  table.Unlock(&block);
  EXPECT_EQ(table.MisuseCount(), 5);
  EXPECT_EQ(table.New(-1), nullptr);
}

TEST(DescriptorSuite, ReadsWhatItWroteInTheOrderOfWriting) {
  HandleTable handles;
  DescriptorSuite suite(handles);
  const PIWriteDescriptor writer = suite.OpenWrite();
  ASSERT_NE(writer, nullptr);
  EXPECT_EQ(suite.Put(writer, String(FourCC("aeAU"), "name")), noErr);
  EXPECT_EQ(suite.Put(writer, String(FourCC("aeSK"), "piece")), noErr);
  Handle descriptor = nullptr;
  EXPECT_EQ(suite.CloseWrite(writer, &descriptor), noErr);

  DescriptorKeyID keys[] = {FourCC("aeSK"), FourCC("aeCT"), 0};
  const PIReadDescriptor reader = suite.OpenRead(descriptor, keys);
  ASSERT_NE(reader, nullptr);
  DescriptorKeyID key = 0;
  DescriptorTypeID type = 0;
  int32_t flags = -1;
  ASSERT_TRUE(suite.GetKey(reader, &key, &type, &flags));
  EXPECT_EQ(key, FourCC("aeAU"));
  EXPECT_EQ(type, FourCC("TEXT"));
  EXPECT_EQ(flags, 0);
  ASSERT_TRUE(suite.GetKey(reader, &key, &type, &flags));
  EXPECT_EQ(key, FourCC("aeSK"));
  const DescriptorEntry* entry = suite.Get(reader, {DescriptorType::kString});
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->bytes, "piece");
  EXPECT_FALSE(suite.GetKey(reader, &key, &type, &flags));
  // The keys that were met are struck out, those that were not still stand.
  EXPECT_EQ(keys[0], FourCC("null"));
  EXPECT_EQ(keys[1], FourCC("aeCT"));
  EXPECT_EQ(suite.CloseRead(reader), noErr);
  EXPECT_EQ(suite.OpenCount(), 0u);
}

TEST(DescriptorSuite, AValueOfAnotherTypeIsAnErrorThatClosingTells) {
  HandleTable handles;
  DescriptorSuite suite(handles);
  const Handle descriptor = handles.New(FormatDescriptor({String(FourCC("aeAU"), "name")}));
  const PIReadDescriptor reader = suite.OpenRead(descriptor, nullptr);
  EXPECT_EQ(suite.Get(reader, {DescriptorType::kString}), nullptr);  // no key was asked for yet
  ASSERT_TRUE(suite.GetKey(reader, nullptr, nullptr, nullptr));
  EXPECT_EQ(suite.Get(reader, {DescriptorType::kFloat}), nullptr);
  EXPECT_EQ(suite.CloseRead(reader), kParamErr);
}

TEST(DescriptorSuite, UnknownTokensAndHandlesAreRefused) {
  HandleTable handles;
  DescriptorSuite suite(handles);
  const auto wrong = reinterpret_cast<PIReadDescriptor>(&suite);
  EXPECT_FALSE(suite.GetKey(wrong, nullptr, nullptr, nullptr));
  EXPECT_EQ(suite.CloseRead(wrong), kParamErr);
  EXPECT_EQ(suite.Put(reinterpret_cast<PIWriteDescriptor>(&suite), {}), kParamErr);
  EXPECT_EQ(suite.OpenRead(nullptr, nullptr), nullptr);
  EXPECT_EQ(suite.MisuseCount(), 4);
  EXPECT_EQ(suite.OpenRead(handles.New(std::string("no descriptor")), nullptr), nullptr);
}
