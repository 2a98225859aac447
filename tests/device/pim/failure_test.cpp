// Every call, every call of the store and every allocation of a long scenario is made to fail once:
// the failure is reported, nothing is left behind, and the device goes on.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "device/pim/pim_fixture.h"
#include "support/call_hook.h"

namespace tamu::testing {
namespace {

// Allocations until one fails; 0 lets all succeed.
std::uint64_t fail_allocation_in = 0;

bool FailsNow() noexcept { return fail_allocation_in != 0 && --fail_allocation_in == 0; }

}  // namespace
}  // namespace tamu::testing

[[gnu::noinline]] void* operator new(std::size_t size) {
  void* block = tamu::testing::FailsNow() ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace tamu::testing {
namespace {

constexpr HRESULT kInjected = hr::kAccessDenied;

#define TAMU_STEP(call)                                                   \
  do {                                                                    \
    if (const HRESULT step = (call); platform::Failed(step)) return step; \
  } while (false)

template <typename Interface>
ComPtr<Interface> Typed(IDispatch* item) {
  return ComPtr<Interface>(static_cast<Interface*>(item));
}

HRESULT UseContacts(IPOutlookApp* application) {
  ComPtr<IFolder> folder;
  TAMU_STEP(application->GetDefaultFolder(platform::kContactsFolder, folder.put()));
  ComPtr<IPOutlookItemCollection> items;
  TAMU_STEP(folder->get_Items(items.put()));
  IDispatch* item = nullptr;
  TAMU_STEP(items->Add(&item));
  const ComPtr<IContact> contact = Typed<IContact>(item);
  TAMU_STEP(contact->put_LastName(Arg(u"A name that is longer than what a string keeps inside")));
  TAMU_STEP(contact->put_Birthday(1));
  std::uint8_t byte = 7;
  platform::CEBLOB ink{1, &byte};
  TAMU_STEP(contact->put_BodyInk(&ink));
  TAMU_STEP(contact->Save());
  ComPtr<IContact> copy;
  TAMU_STEP(contact->Copy(copy.put()));
  BStr text;
  TAMU_STEP(copy->get_LastName(text.put()));
  TAMU_STEP(items->Sort(Arg(u"[LastName]"), kVariantTrue));
  TAMU_STEP(items->Item(1, &item));
  Typed<IContact>(item).reset();
  ComPtr<IPOutlookItemCollection> restricted;
  TAMU_STEP(items->Restrict(Arg(u"[LastName] > \"a\" OR ([Oid] = 5)"), restricted.put()));
  std::int32_t count = 0;
  TAMU_STEP(restricted->get_Count(&count));
  TAMU_STEP(restricted->Find(Arg(u"[LastName]<>\"b\""), &item));
  Typed<IContact>(item).reset();
  TAMU_STEP(restricted->FindNext(&item));
  Typed<IContact>(item).reset();
  ComPtr<platform::IExactFind> exact;
  TAMU_STEP(items->QueryInterface(platform::IID_IExactFind, exact.put_void()));
  const platform::ExactTerm term{u"LastName", text.get(), text.size(), 0};
  TAMU_STEP(exact->FindExact(&term, 1, &item));
  Typed<IContact>(item).reset();
  return items->Remove(1);
}

HRESULT UseSeries(IPOutlookApp* application) {
  IDispatch* item = nullptr;
  TAMU_STEP(application->CreateItem(platform::kAppointmentItem, &item));
  const ComPtr<IAppointment> series = Typed<IAppointment>(item);
  TAMU_STEP(series->put_Start(Day2004(5, 9)));
  TAMU_STEP(series->put_End(Day2004(5, 10)));
  ComPtr<IRecipients> recipients;
  TAMU_STEP(series->get_Recipients(recipients.put()));
  ComPtr<IRecipient> recipient;
  TAMU_STEP(recipients->Add(Arg(u"Somebody with a long name"), recipient.put()));
  TAMU_STEP(recipient->put_Address(Arg(u"somebody.with.a.long.name@example.com")));
  ComPtr<IRecurrencePattern> pattern;
  TAMU_STEP(series->GetRecurrencePattern(pattern.put()));
  TAMU_STEP(pattern->put_RecurrenceType(platform::kRecursDaily));
  TAMU_STEP(pattern->put_Occurrences(5));
  TAMU_STEP(series->Save());
  ComPtr<IAppointment> occurrence;
  TAMU_STEP(pattern->GetOccurrence(Day2004(7), occurrence.put()));
  TAMU_STEP(occurrence->Delete());
  ComPtr<IExceptions> exceptions;
  TAMU_STEP(pattern->get_Exceptions(exceptions.put()));
  ComPtr<IException> exception;
  TAMU_STEP(exceptions->Item(1, exception.put()));
  std::int32_t oid = 0;
  TAMU_STEP(series->get_Oid(&oid));
  TAMU_STEP(application->GetItemFromOid(oid, &item));
  return Typed<IAppointment>(item)->Delete();
}

HRESULT UseTask(IPOutlookApp* application) {
  IDispatch* item = nullptr;
  TAMU_STEP(application->CreateItem(platform::kTaskItem, &item));
  const ComPtr<ITask> task = Typed<ITask>(item);
  TAMU_STEP(task->put_Subject(Arg(u"A subject that is longer than what a string keeps inside")));
  TAMU_STEP(task->put_Complete(kVariantTrue));
  TAMU_STEP(task->Save());
  return task->Delete();
}

// The scenario: the first failure that a call gives, kOk at its end. Leaves no items.
HRESULT UseDevice(PimDevice* device) {
  ComPtr<IPOutlookApp> application;
  TAMU_STEP(device->CreateApplication(platform::IID_IPOutlookApp, application.put_void()));
  TAMU_STEP(application->Logon(0));
  TAMU_STEP(UseContacts(application.get()));
  TAMU_STEP(UseSeries(application.get()));
  TAMU_STEP(UseTask(application.get()));
  return application->Logoff();
}

// The end of a run in which something failed: it was said, and nothing is left.
void ExpectReported(HRESULT result, HRESULT expected) {
  EXPECT_EQ(result, expected);
  EXPECT_EQ(device::LiveObjects(), 0);
  EXPECT_EQ(platform::SysLiveStrings(), 0);
}

TEST(PimFailure, EveryCallThatFailsIsReported) {
  std::uint64_t n = 1;
  while (true) {
    MemoryPimDevice fresh;
    CallHookScope hook;
    hook.AnswerNth(n, kInjected);
    const HRESULT result = UseDevice(&fresh);
    if (hook.struck().empty()) {
      ExpectReported(result, hr::kOk);
      break;
    }
    SCOPED_TRACE(hook.struck());
    ExpectReported(result, kInjected);
    ++n;
  }
  EXPECT_GT(n, 40U);
}

TEST(PimFailure, EveryFailureOfTheStoreIsReported) {
  MemoryPimDevice device;
  const std::uint64_t before = device.store().calls();
  ASSERT_EQ(UseDevice(&device), hr::kOk);
  const std::uint64_t calls = device.store().calls() - before;
  ASSERT_GT(calls, 20U);
  for (std::uint64_t n = 1; n <= calls; ++n) {
    SCOPED_TRACE(n);
    MemoryPimDevice fresh;
    fresh.store().FailNth(n, hr::kDiskFull);
    const HRESULT result = UseDevice(&fresh);
    // A version that is not known after a removal costs a list and nothing else.
    const bool harmless = fresh.store().failed_version();
    ExpectReported(result, harmless && result == hr::kOk ? hr::kOk : hr::kDiskFull);
    fresh.store().FailNth(0, hr::kOk);
    EXPECT_EQ(UseDevice(&fresh), hr::kOk);
  }
}

TEST(PimFailure, EveryAllocationThatFailsIsReported) {
  std::uint64_t n = 1;
  while (true) {
    // What an earlier round left behind would take allocations of its own.
    MemoryPimDevice fresh;
    fail_allocation_in = n;
    const HRESULT result = UseDevice(&fresh);
    const bool struck = fail_allocation_in == 0;
    fail_allocation_in = 0;
    ExpectReported(result, struck ? hr::kOutOfMemory : hr::kOk);
    if (!struck || ::testing::Test::HasFailure()) break;
    ++n;
  }
  EXPECT_GT(n, 50U);
}

}  // namespace
}  // namespace tamu::testing
