// Lets the n-th allocation of a conversion fail, for every n: nothing is thrown and the text stays as
// it was.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

#include "mailstore/html_text.h"

namespace {

int allocations_left = -1;  // negative: as many as wanted

bool MayAllocate() noexcept {
  if (allocations_left < 0) return true;
  if (allocations_left == 0) return false;
  --allocations_left;
  return true;
}

}  // namespace

// The program's allocation, with a seam.
[[gnu::noinline]] void* operator new(std::size_t size) {
  void* memory = MayAllocate() ? std::malloc(size > 0 ? size : 1) : nullptr;
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

namespace tamu {
namespace {

TEST(HtmlToText, WhenAnAllocationFailsTheTextStaysAsItWas) {
  std::u16string html = u"<body>";
  for (int i = 0; i < 1000; ++i) html += u"text<br>&amp;&#65;<a href='somewhere else'>\n  ";
  int needed = 0;
  for (; needed < 100; ++needed) {
    std::u16string text = u"what was there before";
    allocations_left = needed;
    const std::int32_t result = HTML_ToText(html.c_str(), &text);
    const bool enough = allocations_left == 0 && text.size() > 100;
    allocations_left = -1;
    EXPECT_EQ(result, 1);
    if (enough) break;
    EXPECT_EQ(text, u"what was there before") << needed;
  }
  EXPECT_EQ(needed, 1);  // one block holds the whole text
}

}  // namespace
}  // namespace tamu
