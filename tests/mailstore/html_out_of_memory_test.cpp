// Lets the n-th allocation of a conversion fail, for every n: nothing is thrown and the text stays as
// it was; and no message gets an empty body that way.
#include <gtest/gtest.h>

#include <string>

#include "core/log.h"
#include "core/memory.h"
#include "core/records.h"
#include "mailstore/html_text.h"
#include "mailstore/mail_message.h"
#include "mailstore/scripted_message.h"
#include "platform/com_ptr.h"
#include "support/failing_new.h"
#include "text/tokens.h"

namespace tamu {
namespace {

using testing::allocations_left;

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

// Counts the line, without allocating anything.
void CountLine(const LogLine& line, void* user) {
  if (line.text == "MAPI:  Out of memory, the message's body is left as it was" &&
      line.severity == LogSeverity::kError) {
    ++*static_cast<int*>(user);
  }
}

TEST(MailBody, WhenAnAllocationFailsItIsLeftAsItWas) {
  for (const char* const content_type : {"text/plain", "text/html"}) {
    ObjectRecord record{};
    record.message.body.text = MEM_CopyText("<body>" + std::string(500, 'x')).release();
    STR_CopyField(record.message.body.content_type, content_type);
    const platform::ComPtr<testing::ScriptedMessage> message(new testing::ScriptedMessage);
    for (int allowed = 0;; ++allowed) {
      ASSERT_LT(allowed, 10);
      message->open_property_calls = 0;
      int lines = 0;
      LOG_SetObserver(&CountLine, &lines);
      allocations_left = allowed;
      static_cast<void>(MAPI_SetMessageProps(message.get(), record.message));
      allocations_left = -1;
      LOG_SetObserver(nullptr, nullptr);
      EXPECT_EQ(lines, 1 - message->open_property_calls) << content_type << allowed;
      if (message->open_property_calls != 0) {
        EXPECT_EQ(allowed, 2) << "the text, and the text as it is stored";
        break;
      }
    }
    RECORD_Free(KIND_MSG_INBOX, &record);
  }
}

}  // namespace
}  // namespace tamu
