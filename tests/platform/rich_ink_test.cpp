#include "platform/rich_ink.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "device/ink/ink_control.h"
#include "device/ink/ink_decoder.h"
#include "device/ink/ink_encoder.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "platform/test_folder.h"

namespace tamu::platform {
namespace {

using Bytes = std::vector<std::uint8_t>;

// The other side of a stream.
struct Peer {
  Bytes bytes;         // what is given, or was taken
  std::size_t at = 0;  // how much was given
  int calls = 0;
  int fail_at = 0;  // the call that answers `error`
  std::uint32_t error = 0;
  std::int32_t largest = 0;  // piece that was asked for or given
  std::int32_t lie = -1;     // reported instead of the real count
};

std::uint32_t TAMU_PLATFORM_CALLBACK Give(std::uintptr_t cookie, std::uint8_t* buffer,
                                          std::int32_t size, std::int32_t* done) {
  auto* const peer = reinterpret_cast<Peer*>(cookie);
  peer->largest = std::max(peer->largest, size);
  if (++peer->calls == peer->fail_at) return peer->error;
  const std::size_t count = std::min(peer->bytes.size() - peer->at, static_cast<std::size_t>(size));
  std::copy_n(peer->bytes.begin() + static_cast<std::ptrdiff_t>(peer->at), count, buffer);
  peer->at += count;
  *done = peer->lie >= 0 ? peer->lie : static_cast<std::int32_t>(count);
  return 0;
}

std::uint32_t TAMU_PLATFORM_CALLBACK Take(std::uintptr_t cookie, std::uint8_t* buffer,
                                          std::int32_t size, std::int32_t* done) {
  auto* const peer = reinterpret_cast<Peer*>(cookie);
  peer->largest = std::max(peer->largest, size);
  if (++peer->calls == peer->fail_at) return peer->error;
  peer->bytes.insert(peer->bytes.end(), buffer, buffer + size);
  *done = peer->lie >= 0 ? peer->lie : size;
  return 0;
}

Bytes Utf16(std::u16string_view text) {
  Bytes bytes(text.size() * 2);
  std::memcpy(bytes.data(), text.data(), bytes.size());
  return bytes;
}

// A control for one test.
class RichInk : public ::testing::Test {
 protected:
  RichInk() {
    InitRichInkDLL();
    window_ = Make(kRichInkClass);
  }
  ~RichInk() override { DestroyWindow(window_); }

  static WindowHandle Make(const char16_t* class_name) {
    return CreateWindowExW(0, class_name, u"", kRichInkStyle, kUseDefault, kUseDefault, kUseDefault,
                           kUseDefault, 0, 0, 0, nullptr);
  }

  std::intptr_t Stream(std::uint32_t message, std::uintptr_t format, EditStreamCallback callback,
                       Peer* peer) {
    EditStream stream = {reinterpret_cast<std::uintptr_t>(peer), 0xDEAD, callback};
    const std::intptr_t result =
        SendMessageW(window_, message, format, reinterpret_cast<std::intptr_t>(&stream));
    error_ = stream.error;
    return result;
  }
  void In(std::uintptr_t format, Bytes bytes) {
    Peer peer;
    peer.bytes = std::move(bytes);
    EXPECT_EQ(Stream(kEmStreamIn, format, &Give, &peer), 0);
    EXPECT_EQ(error_, 0U);
  }
  Bytes Out(std::uintptr_t format) {
    Peer peer;
    EXPECT_EQ(Stream(kEmStreamOut, format, &Take, &peer), 0);
    EXPECT_EQ(error_, 0U);
    return peer.bytes;
  }

  WindowHandle window_ = 0;
  std::uint32_t error_ = 0;
};

TEST_F(RichInk, TextGoesInAndADocumentComesOut) {
  In(kSfUnicodeText, Utf16(u"Grüße\n漢字" + std::u16string(1, 0)));
  EXPECT_EQ(Out(kSfPwi), device::INK_Encode(u"Grüße\n漢字"));
  EXPECT_EQ(Out(kSfUnicodeText), Utf16(u"Grüße\r\n漢字" + std::u16string(1, 0)));
}

TEST_F(RichInk, ANewControlIsEmpty) {
  EXPECT_EQ(Out(kSfPwi), device::INK_Encode(u""));
  EXPECT_EQ(Out(kSfUnicodeText), Utf16(std::u16string(1, 0)));
  EXPECT_EQ(Out(kSfText), Bytes());
}

TEST_F(RichInk, DocumentsAndCodePageTextGoInToo) {
  const ScopedVariable locale("LC_ALL", "C");
  const TestDevice device;
  In(kSfPwi, device::INK_Encode(u"one\r\ntwo"));
  EXPECT_EQ(Out(kSfText), (Bytes{'o', 'n', 'e', '\r', '\n', 't', 'w', 'o'}));
  In(kSfText, {0xE9, 0x80, '\r', 'x', 0});  // windows-1252
  EXPECT_EQ(Out(kSfUnicodeText), Utf16(u"\u00E9\u20AC\r\nx" + std::u16string(1, 0)));
  EXPECT_EQ(Out(kSfText), (Bytes{0xE9, 0x80, '\r', '\n', 'x'}));
}

TEST_F(RichInk, LongTextPassesInPieces) {
  for (const std::size_t units : {2047U, 2048U, 2049U, 4096U, 500000U}) {
    const std::u16string text(units, u'\u4E2D');
    Peer peer;
    peer.bytes = Utf16(text);
    ASSERT_EQ(Stream(kEmStreamIn, kSfUnicodeText, &Give, &peer), 0);
    EXPECT_EQ(peer.at, units * 2);
    EXPECT_EQ(peer.largest, 4096);
    Peer taker;
    ASSERT_EQ(Stream(kEmStreamOut, kSfPwi, &Take, &taker), 0);
    EXPECT_EQ(device::INK_Decode(taker.bytes).text, text);
    EXPECT_LE(taker.largest, 4096);
  }
}

TEST_F(RichInk, AnErrorOfTheCallbackEndsTheStream) {
  In(kSfUnicodeText, Utf16(u"before"));
  for (int call = 1; call <= 3; ++call) {
    Peer peer;
    peer.bytes = Bytes(10000, 'x');
    peer.fail_at = call;
    peer.error = 0x80070005;
    EXPECT_NE(Stream(kEmStreamIn, kSfUnicodeText, &Give, &peer), 0);
    EXPECT_EQ(error_, 0x80070005U);
    EXPECT_EQ(peer.calls, call);
    EXPECT_EQ(Out(kSfUnicodeText), Utf16(u"before" + std::u16string(1, 0)));
  }
  In(kSfUnicodeText, Utf16(std::u16string(10000, u'x')));
  Peer full;
  full.fail_at = 2;
  full.error = 112;
  EXPECT_EQ(Stream(kEmStreamOut, kSfUnicodeText, &Take, &full), 112);
  EXPECT_EQ(error_, 112U);
  EXPECT_EQ(full.calls, 2);
}

TEST_F(RichInk, ACountOtherThanAskedForEndsTheStream) {
  In(kSfUnicodeText, Utf16(std::u16string(10000, u'x')));
  Peer less;
  less.lie = 7;
  EXPECT_EQ(Stream(kEmStreamOut, kSfUnicodeText, &Take, &less), 0);
  EXPECT_EQ(less.calls, 1);
  Peer short_piece;
  short_piece.bytes = Bytes(10000, 'x');
  short_piece.lie = 8;
  EXPECT_EQ(Stream(kEmStreamIn, kSfUnicodeText, &Give, &short_piece), 0);
  EXPECT_EQ(short_piece.calls, 1);
  EXPECT_EQ(Out(kSfUnicodeText), Utf16(u"\u7878\u7878\u7878\u7878" + std::u16string(1, 0)));
  Peer impossible;
  impossible.lie = 4097;
  EXPECT_EQ(Stream(kEmStreamIn, kSfUnicodeText, &Give, &impossible), 87);
}

TEST_F(RichInk, FormatsThatAreNotKnownAreRefused) {
  Peer peer;
  for (const std::uintptr_t format : {std::uintptr_t{0}, std::uintptr_t{2}, std::uintptr_t{16}}) {
    EXPECT_EQ(Stream(kEmStreamIn, format, &Give, &peer), 87);
    EXPECT_EQ(error_, 87U);
    EXPECT_EQ(Stream(kEmStreamOut, format, &Take, &peer), 87);
  }
  EXPECT_EQ(Stream(kEmStreamIn, kSfText, nullptr, &peer), 87);
  EXPECT_EQ(SendMessageW(window_, kEmStreamOut, kSfPwi, 0), 87);
  EXPECT_EQ(peer.calls, 0);
}

TEST_F(RichInk, OtherMessagesAndWindowsAnswerZero) {
  EXPECT_EQ(SendMessageW(window_, 12, 0, 0), 0);
  SetLastError(0);
  Peer peer;
  EditStream stream = {reinterpret_cast<std::uintptr_t>(&peer), 0, &Take};
  EXPECT_EQ(
      SendMessageW(window_ + 1000, kEmStreamOut, kSfPwi, reinterpret_cast<std::intptr_t>(&stream)),
      0);
  EXPECT_EQ(GetLastError(), kErrorInvalidWindowHandle);
  EXPECT_EQ(peer.calls, 0);
}

TEST_F(RichInk, WindowsAreCountedAndGoOnce) {
  const int before = device::INK_LiveControls();
  const WindowHandle first = Make(u"RICHINK");
  const WindowHandle second = Make(kRichInkClass);
  EXPECT_NE(first, 0);
  EXPECT_NE(first, second);
  EXPECT_EQ(device::INK_LiveControls(), before + 2);
  EXPECT_EQ(DestroyWindow(first), 1);
  EXPECT_EQ(DestroyWindow(first), 0);
  EXPECT_EQ(GetLastError(), kErrorInvalidWindowHandle);
  EXPECT_NE(Make(kRichInkClass), first);  // a handle means one window for ever
  EXPECT_EQ(DestroyWindow(second + 1), 1);
  EXPECT_EQ(DestroyWindow(second), 1);
  EXPECT_EQ(DestroyWindow(0), 0);
  EXPECT_EQ(device::INK_LiveControls(), before);
}

TEST_F(RichInk, OtherClassesAreNotKnown) {
  for (const char16_t* name :
       {u"Edit", u"RichInk2", u"RichIn", u"", static_cast<const char16_t*>(nullptr)}) {
    SetLastError(0);
    EXPECT_EQ(Make(name), 0);
    EXPECT_EQ(GetLastError(), kErrorCannotFindWindowClass);
  }
}

TEST(RichInkDeathTest, TheClassIsKnownAfterTheLibraryWasInitialised) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // a process in which nobody did
  EXPECT_EXIT(
      {
        const auto make = [] {
          return CreateWindowExW(0, kRichInkClass, u"", kRichInkStyle, 0, 0, 0, 0, 0, 0, 0,
                                 nullptr);
        };
        const bool unknown = make() == 0 && GetLastError() == kErrorCannotFindWindowClass;
        InitRichInkDLL();
        InitRichInkDLL();
        ::_exit(unknown && make() != 0 ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST(SHGetSpecialFolderPathW, IsDocumentsInTheDevicesFolder) {
  const TestDevice device;
  char16_t path[kMaxPath];
  ASSERT_EQ(SHGetSpecialFolderPathW(0, path, kCsidlPersonal, 0), 1);
  EXPECT_EQ(std::u16string(path), device.Wide("Documents"));
  EXPECT_FALSE(std::filesystem::exists(device / "Documents"));
  ASSERT_EQ(SHGetSpecialFolderPathW(0, path, kCsidlPersonal, 1), 1);
  EXPECT_TRUE(std::filesystem::is_directory(device / "Documents"));
  EXPECT_EQ(SHGetSpecialFolderPathW(0, path, kCsidlPersonal, 1), 1);
}

TEST(SHGetSpecialFolderPathW, MissingFoldersAboveAreMadeToo) {
  const TestFolder folder;
  const ScopedVariable home("TAMU_HOME", (folder / "a/b/").c_str());
  char16_t path[kMaxPath];
  ASSERT_EQ(SHGetSpecialFolderPathW(0, path, kCsidlPersonal, 1), 1);
  EXPECT_EQ(std::u16string(path), folder.Wide("a/b/Documents"));
  EXPECT_TRUE(std::filesystem::is_directory(folder / "a/b/Documents"));
}

TEST(SHGetSpecialFolderPathW, FailuresHaveThePlatformsNumbers) {
  const TestDevice device;
  char16_t path[kMaxPath];
  const auto error = [&](std::int32_t folder, std::int32_t create) {
    SetLastError(0);
    EXPECT_EQ(SHGetSpecialFolderPathW(0, path, folder, create), 0);
    return GetLastError();
  };
  EXPECT_EQ(error(6, 1), kErrorInvalidParameter);
  EXPECT_EQ(SHGetSpecialFolderPathW(0, nullptr, kCsidlPersonal, 0), 0);
  WriteBytes(device / "Documents", "a file");
  EXPECT_EQ(error(kCsidlPersonal, 1), kErrorPathNotFound);
  {
    const ScopedVariable home("TAMU_HOME", ("/" + std::string(250, 'x')).c_str());
    EXPECT_EQ(error(kCsidlPersonal, 0), kErrorBufferOverflow);
  }
  const ScopedVariable no_home("TAMU_HOME", nullptr);
  const ScopedVariable no_data("XDG_DATA_HOME", nullptr);
  const ScopedVariable nobody("HOME", nullptr);
  EXPECT_EQ(error(kCsidlPersonal, 0), kErrorPathNotFound);
}

}  // namespace
}  // namespace tamu::platform
