// The built library as a host and the system's loader see it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <set>

#include "host/win32/PeFile.h"

namespace vm {
namespace {

const PeFile& PlugIn() {
  static const PeFile file([] {
    std::ifstream stream(VM_BINARY_DIR "/bin/VM_PlugIn.8bf", std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  }());
  return file;
}

std::string Resource(const std::string& type, const std::string& name) {
  const auto found = PlugIn().Resources().find({type, name, 1033});
  EXPECT_NE(found, PlugIn().Resources().end()) << type << " " << name;
  return found != PlugIn().Resources().end() ? found->second : std::string();
}

// Least significant byte first.
std::string Little(uint32_t number, int32_t size) {
  std::string bytes;
  for (int32_t i = 0; i < size; ++i)
    bytes.push_back(static_cast<char>(number >> (8 * i)));
  return bytes;
}
std::string Word(uint32_t number) {
  return Little(number, 2);
}
std::string Long(uint32_t number) {
  return Little(number, 4);
}
// A four-character code as the host reads it.
std::string Code(std::string code) {
  EXPECT_EQ(code.size(), 4u);
  std::reverse(code.begin(), code.end());
  return code;
}
std::string Pascal(const std::string& text) {
  return Little(static_cast<uint32_t>(text.size()), 1) + text;
}
// Text in 16-bit characters with its terminator.
std::string Wide(const std::string& text) {
  std::string bytes;
  for (const char character : text)
    bytes += Word(static_cast<uint8_t>(character));
  return bytes + Word(0);
}

// Compares and says where the first difference is.
void ExpectBytes(const std::string& actual, const std::string& expected) {
  EXPECT_EQ(actual.size(), expected.size());
  const size_t size = std::min(actual.size(), expected.size());
  for (size_t i = 0; i < size; ++i) {
    ASSERT_EQ(static_cast<uint8_t>(actual[i]), static_cast<uint8_t>(expected[i])) << "offset " << i;
  }
}

TEST(PlugInFile, IsA32BitLibrary) {
  EXPECT_EQ(PlugIn().Machine(), 0x014C);
  EXPECT_TRUE(PlugIn().IsLibrary());
}

TEST(PlugInFile, ExportsExactlyTheEntryPointAndTheDialogProcedureLetterForLetter) {
  EXPECT_EQ(PlugIn().Exports(), (std::vector<std::string>{"PlugInMain", "_DissolveProc@16"}));
}

TEST(PlugInFile, ImportsLibrariesOfTheSystemOnly) {
  const std::set<std::string> system = {"kernel32.dll", "user32.dll", "gdi32.dll",
                                        "comdlg32.dll", "msvcrt.dll", "advapi32.dll",
                                        "shell32.dll"};
  const std::vector<std::string> imports = PlugIn().Imports();
  EXPECT_FALSE(imports.empty());
  for (std::string name : imports) {
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char character) {
      return static_cast<char>(std::tolower(character));
    });
    EXPECT_TRUE(system.contains(name)) << name;
  }
}

TEST(PlugInFile, HasTheseResourcesInUsEnglishAndNoOthers) {
  std::vector<PeFile::ResourceId> expected = {
      {"AETE", "#16000", 1033}, {"PIPL", "#1", 1033},   {"#5", "VMCANCELDIALOG", 1033},
      {"#3", "#1", 1033},       {"#3", "#2", 1033},     {"#3", "#3", 1033},
      {"#3", "#4", 1033},       {"#14", "#1000", 1033}, {"#16", "#1", 1033},
  };
  std::sort(expected.begin(), expected.end());
  std::vector<PeFile::ResourceId> actual;
  for (const auto& [id, bytes] : PlugIn().Resources())
    actual.push_back(id);
  ASSERT_EQ(actual.size(), expected.size());
  for (size_t i = 0; i < actual.size(); ++i) {
    EXPECT_EQ(actual[i].type, expected[i].type);
    EXPECT_EQ(actual[i].name, expected[i].name);
    EXPECT_EQ(actual[i].language, expected[i].language);
  }
}

TEST(PlugInFile, ThePropertyListIsByteForByteAsHostsReadIt) {
  const auto property = [](const std::string& key, uint32_t length, const std::string& data) {
    EXPECT_EQ(data.size(), length) << key;
    return Code("8BIM") + Code(key) + Long(0) + Long(length) + data;
  };
  const std::string scope = "Quillon Software Velvetmoor";
  const auto filterCase = [](uint32_t input, uint32_t flags) {
    return Little(input, 1) + Little(1, 1) + Little(flags, 1) + Little(0, 1);
  };
  ExpectBytes(
      Resource("PIPL", "#1"),
      Word(1) + Long(0) + Long(8) +                                                          //
          property("kind", 4, Code("8BFM")) +                                                //
          property("name", 16, Little(14, 1) + "Velvetmoor..." + std::string(2, '\0')) +     //
          property("catg", 20, Little(17, 1) + "Quillon Software" + std::string(3, '\0')) +  //
          property("vers", 4, std::string("\0\0\4\0", 4)) +                                  //
          property("wx86", 12, "PlugInMain" + std::string(2, '\0')) +                        //
          property("hstm", 52,
                   Long(0) + "Eyeb" + "Eyeb" + Word(16000) + scope +
                       std::string(52 - 14 - scope.size(), ' ')) +  //
          property("mode", 4, std::string("\xFF\xFF\0\0", 4)) +     //
          property("fici", 28,
                   filterCase(1, 0x09) + filterCase(1, 0x09) + filterCase(4, 0x08) +
                       filterCase(4, 0x0A) + filterCase(4, 0x0A) + filterCase(4, 0x08) +
                       filterCase(4, 0x08)));
}

TEST(PlugInFile, TheEntryPointThatThePropertyNamesIsExported) {
  const std::string properties = Resource("PIPL", "#1");
  const size_t key = properties.find(Code("wx86"));
  ASSERT_NE(key, std::string::npos);
  const std::string name = properties.c_str() + key + 12;
  const std::vector<std::string> exports = PlugIn().Exports();
  EXPECT_NE(std::find(exports.begin(), exports.end(), name), exports.end()) << name;
}

TEST(PlugInFile, TheTerminologyIsByteForByteAsHostsReadIt) {
  const struct {
    const char* name;
    const char* key;
    const char* type;
  } parameters[] = {
      {"Effect   ", "aeAU", "bool"},
      {"Sub-Detail", "aeSO", "bool"},
      {"Effect Preset    ", "aeSA", "long"},
      {"Size    ", "aeCT", "long"},
      {"Color", "aeCL", "long"},
      {"Sharpen", "aeSH", "long"},
      {"Saturation", "aeST", "long"},
      {"Anti-Noise", "aeAN", "long"},
      {"Brightness", "aeBR", "long"},
      {"Tonal Rangle", "aeGA", "doub"},
      {"Red", "aeRD", "long"},
      {"Green", "aeGN", "long"},
      {"Blue", "aeBL", "long"},
      {"AntiMoire", "aeAM", "bool"},
      {"Despeckle", "aeDS", "bool"},
  };
  const std::string description = "Velvetmoor Filter     ";
  ASSERT_EQ(description.size(), 22u);
  std::string expected = Word(1) + std::string("\1\0", 2) + Word(0) + Word(0) + Word(1);
  expected +=
      Pascal("Quillon Software    ") + Pascal(description) + "Eyeb" + Word(1) + Word(1) + Word(1);
  expected += Pascal("VM1    ") + Pascal(description) + "Eyeb" + "Eyeb";
  expected += Code("null") + Pascal("") + Word(0);
  expected += Code("#ImR") + Pascal("") + Word(0x000D);
  expected += Word(15);
  for (const auto& parameter : parameters)
    expected +=
        Pascal(parameter.name) + Code(parameter.key) + Code(parameter.type) + Pascal("") + Word(0);
  expected += Word(0) + Word(0) + Word(0);
  ExpectBytes(Resource("AETE", "#16000"), expected);
}

TEST(PlugInFile, TheWaitDialogIsByteForByteTheTemplate) {
  const auto box = [](uint32_t x, uint32_t y, uint32_t width, uint32_t height) {
    return Word(x) + Word(y) + Word(width) + Word(height);
  };
  // Class by number: 0x80 is a button, 0x82 a static.
  const auto control = [](uint32_t style, const std::string& place, uint32_t id, uint32_t kind,
                          const std::string& text) {
    return Long(style) + Long(0) + place + Word(id) + Word(0xFFFF) + Word(kind) + Wide(text) +
           Word(0);
  };
  const auto aligned = [](std::string bytes) {
    bytes.resize((bytes.size() + 3) / 4 * 4);
    return bytes;
  };
  std::string expected = Long(0x80C000C0) + Long(0) + Word(2) + box(34, 40, 175, 71);
  expected += Word(0) + Word(0) + Wide("Velvetmoor") + Word(8) + Wide("MS Sans Serif");
  expected = aligned(expected) + control(0x50014000, box(140, 50, 34, 14), 2, 0x80, "&Cancel");
  expected =
      aligned(expected) +
      control(0x50000002, box(10, 5, 110, 60), 1, 0x82,
              "Velvetmoor is active. Please switch to Velvetmoor and finish task or hit cancel.");
  std::string actual = Resource("#5", "VMCANCELDIALOG");
  ExpectBytes(aligned(actual), aligned(expected));
}

TEST(PlugInFile, TheIconGroupHasTwoSizesInTwoDepths) {
  const std::string group = Resource("#14", "#1000");
  const auto entry = [](uint32_t size, uint32_t colours, uint32_t bits, uint32_t id) {
    const std::string image = Resource("#3", "#" + std::to_string(id));
    // The image itself: its header's size, its width, twice its height, one plane, its depth.
    EXPECT_EQ(image.substr(0, 16), Long(40) + Long(size) + Long(2 * size) + Word(1) + Word(bits))
        << id;
    return Little(size, 1) + Little(size, 1) + Little(colours, 1) + Little(0, 1) + Word(1) +
           Word(bits) + Long(static_cast<uint32_t>(image.size())) + Word(id);
  };
  ExpectBytes(group, Word(0) + Word(1) + Word(4) + entry(16, 16, 4, 1) + entry(16, 0, 8, 2) +
                         entry(32, 16, 4, 3) + entry(32, 0, 8, 4));
}

// --- The version block: nested pieces of length, value length, kind, key and value, aligned to 4
// -----------------

struct VersionPiece {
  std::string key;
  std::string value;  // text pieces: narrowed characters
  std::vector<VersionPiece> children;
};

uint32_t At(const std::string& bytes, size_t offset, size_t size) {
  uint32_t number = 0;
  for (size_t i = size; i-- > 0;)
    number = number << 8 | static_cast<uint8_t>(bytes.at(offset + i));
  return number;
}

VersionPiece ReadVersionPiece(const std::string& bytes, size_t begin) {
  const size_t end = begin + At(bytes, begin, 2);
  const uint32_t valueLength = At(bytes, begin + 2, 2);
  const bool isText = At(bytes, begin + 4, 2) != 0;
  VersionPiece piece;
  size_t at = begin + 6;
  for (; At(bytes, at, 2) != 0; at += 2)
    piece.key.push_back(static_cast<char>(At(bytes, at, 2)));
  at = (at + 2 + 3) / 4 * 4;
  if (isText) {
    for (uint32_t i = 0; i < valueLength && At(bytes, at + i * 2, 2) != 0; ++i)
      piece.value.push_back(static_cast<char>(At(bytes, at + i * 2, 2)));
    at += valueLength * 2;
  } else {
    piece.value = bytes.substr(at, valueLength);
    at += valueLength;
  }
  for (at = (at + 3) / 4 * 4; at + 6 <= end; at = (at + At(bytes, at, 2) + 3) / 4 * 4)
    piece.children.push_back(ReadVersionPiece(bytes, at));
  return piece;
}

TEST(PlugInFile, TheVersionBlockSaysWhatItShould) {
  const VersionPiece version = ReadVersionPiece(Resource("#16", "#1"), 0);
  EXPECT_EQ(version.key, "VS_VERSION_INFO");
  // Signature, structure version, file version 1.0.2.0, product version 1.0.2.0, flags mask, flags,
  // system, type, subtype, date.
  ExpectBytes(version.value, Long(0xFEEF04BD) + Long(0x00010000) + Long(0x00010000) +
                                 Long(0x00020000) + Long(0x00010000) + Long(0x00020000) +
                                 Long(0x3F) + Long(0) + Long(0x40004) + Long(2) + Long(0) +
                                 Long(0) + Long(0));
  ASSERT_EQ(version.children.size(), 2u);

  const VersionPiece& strings = version.children[0];
  EXPECT_EQ(strings.key, "StringFileInfo");
  ASSERT_EQ(strings.children.size(), 1u);
  EXPECT_EQ(strings.children[0].key, "040904B0");
  std::map<std::string, std::string> values;
  for (const VersionPiece& piece : strings.children[0].children)
    values[piece.key] = piece.value;
  EXPECT_FALSE(values["LegalCopyright"].empty());
  values.erase("LegalCopyright");
  EXPECT_EQ(values, (std::map<std::string, std::string>{
                        {"Comments", ""},
                        {"CompanyName", "Quillon Software"},
                        {"FileDescription", "Velvetmoor Filter"},
                        {"FileVersion", "1, 0, 2, 0"},
                        {"InternalName", "Velvetmoor Filter"},
                        {"LegalTrademarks", ""},
                        {"OriginalFilename", "VM.dll"},
                        {"PrivateBuild", ""},
                        {"ProductName", "Quillon Software, Velvetmoor Filter"},
                        {"ProductVersion", "1.02"},
                        {"SpecialBuild", ""},
                    }));

  const VersionPiece& variables = version.children[1];
  EXPECT_EQ(variables.key, "VarFileInfo");
  ASSERT_EQ(variables.children.size(), 1u);
  EXPECT_EQ(variables.children[0].key, "Translation");
  ExpectBytes(variables.children[0].value, Word(0x0409) + Word(1200));
}

}  // namespace
}  // namespace vm
