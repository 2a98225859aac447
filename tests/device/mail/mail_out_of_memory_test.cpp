// Lets the n-th allocation and all behind it fail, for every n: the caller learns it, nothing is
// thrown and nothing is left behind.
#include "device/mail/mail_scenario.h"
#include "support/failing_new.h"

namespace tamu::testing {
namespace {

namespace hr = platform::hr;

TEST(MailOutOfMemory, EveryAllocationMayFail) {
  MemoryMailDevice device;
  int n = 0;
  for (; n < 2000; ++n) {
    const std::int64_t objects = device::LiveObjects();
    const std::int64_t buffers = platform::LiveMapiBuffers();
    allocations_left = n;
    const HRESULT result = MailScenario::Run(device);
    const bool enough = allocations_left > 0;
    allocations_left = -1;
    ASSERT_EQ(device::LiveObjects(), objects) << n;
    ASSERT_EQ(platform::LiveMapiBuffers(), buffers) << n;
    if (enough) {
      EXPECT_EQ(result, hr::kOk);
      break;
    }
    if (result != hr::kOk) {
      ASSERT_EQ(result, hr::kOutOfMemory) << n;
    }
  }
  EXPECT_GT(n, 40);
  EXPECT_LT(n, 2000);
  EXPECT_EQ(MailScenario::Run(device), hr::kOk);
}

TEST(MailOutOfMemory, CopyOfAValueThatFailsLeavesNothingToDestroy) {
  const device::MailProperty text{1, std::u16string(100, u'x')};
  const device::MailProperty bytes{2, device::Bytes(100)};
  for (const device::MailProperty* property : {&text, &bytes}) {
    allocations_left = 0;
    bool failed = false;
    try {
      const device::MailProperty copy = *property;
      failed = copy.tag == 0;
    } catch (const std::bad_alloc&) {
      failed = true;
    }
    allocations_left = -1;
    EXPECT_TRUE(failed);
  }
}

}  // namespace
}  // namespace tamu::testing
