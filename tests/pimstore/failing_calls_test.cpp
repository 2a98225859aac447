// Every call of the device, every service and every allocation fails in turn, in every operation on
// every kind of item. The result is the promised one, and everything is released.
#include <gtest/gtest.h>

#include <functional>

#include "pimstore/find.h"
#include "pimstore/store_session.h"
#include "platform/bstr.h"
#include "platform/cemapi.h"
#include "platform/code_pages.h"
#include "platform/services.h"

namespace tamu {
namespace {

using testing::CallWatch;
using testing::Card;
using testing::Event;
using testing::LogCapture;
using testing::ToDo;
using C = ContactShape;
using E = EventShape;
using T = ToDoShape;
using Strings = std::vector<std::string>;

void Fill(Card* card) {
  card->With(&C::prop_fn, "First Last")
      .With(&C::prop_n, "Last;First;Middle;Dr.;Jr.")
      .With(&C::prop_bday, "19700102")
      .With(&C::prop_adr, "P;E;S;City;State;1;Land", "HOME")
      .With(&C::prop_adr, ";;S", "WORK")
      .With(&C::prop_title, "Boss")
      .With(&C::prop_org, "Firm;Unit")
      .With(&C::prop_tel, "1", "CELL;CAR")
      .With(&C::prop_tel, "2")
      .With(&C::prop_url, "http://a")
      .With(&C::prop_email, "a", "INTERNET")
      .With(&C::prop_email, "b", "INTERNET;PREF")
      .With(&C::prop_note, "Gr=C3=BC=C3=9Fe=0D=0A", "CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE")
      .With(&C::prop_anniversary, "20000102");
}

// Later than now, so that the store takes the end also where it refused the start.
void Fill(Event* event) {
  event->With(&E::prop_summary, "Event")
      .With(&E::prop_location, "Here")
      .With(&E::prop_categories, "Work")
      .With(&E::prop_dtstart, "22030406T100000")
      .With(&E::prop_dtend, "22030406T110000")
      .With(&E::prop_class, "PRIVATE")
      .With(&E::prop_status, "TENTATIVE")
      .With(&E::prop_description, "Text")
      .With(&E::prop_rrule, "W1 MO WE FR #9")
      .With(&E::prop_exdate, "22030408T100000;22030407T100000")
      .With(&E::prop_attendee, "Ann <a@b>")
      .With(&E::prop_attendee, "c@d")
      .With(&E::prop_dalarm, "22030406T093000");
}

void Fill(ToDo* todo) {
  todo->With(&T::prop_summary, "Task")
      .With(&T::prop_categories, "Work")
      .With(&T::prop_dtstart, "20030402")
      .With(&T::prop_priority, "2")
      .With(&T::prop_status, "COMPLETED")
      .With(&T::prop_class, "PUBLIC")
      .With(&T::prop_description, "Text")
      .With(&T::prop_rrule, "MP1 1- MO TU 20031231T000000")
      .With(&T::prop_dalarm, "20030402T093000");
}

// One operation, with the record it is given. Returns its result.
struct Operation {
  const char* name;
  TamuResult (*run)(ObjectKind kind, ObjectRecord* record, const std::string& id, char* id_out);
};
const Operation kOperations[] = {
    {"add", [](ObjectKind kind, ObjectRecord* record, const std::string&,
               char* id_out) { return POL_AddObject(kind, record, id_out); }},
    {"modify", [](ObjectKind kind, ObjectRecord* record, const std::string& id,
                  char*) { return POL_ModifyObject(kind, id.c_str(), record); }},
    {"fetch",
     [](ObjectKind kind, ObjectRecord*, const std::string& id, char*) {
       ObjectRecord fetched{};
       const TamuResult result = POL_GetObjectById(kind, id.c_str(), &fetched);
       RECORD_Free(kind, &fetched);
       return result;
     }},
    {"find",
     [](ObjectKind kind, ObjectRecord* record, const std::string&, char* id_out) {
       return TamuResult{POL_FindObject(kind, record, id_out, 0) ^ 1U};  // 0 is found
     }},
};

// What an operation answers when the call `failed` fails: saves but the last one do not matter.
TamuResult Expected(const std::string& operation, const std::string& failed, bool last_save) {
  if (operation == "find") {
    const bool harmless =
        failed == "IExactFind::FindExact" || failed.ends_with("::get_Oid") || failed.empty();
    return harmless ? 0U : 1U;
  }
  if (failed == "IPOutlookApp::CreateItem") return TAMU_GENERAL_PIM_ERROR;
  if (failed == "IPOutlookApp::GetItemFromOid") return TAMU_OBJECT_NOT_FOUND;
  return last_save ? TamuResult{TAMU_GENERAL_PIM_ERROR} : TamuResult{TAMU_OK};
}

class FailingCallsTest : public testing::SessionTest {
 protected:
  // Runs `body` with each operation on each kind of item, which is in the store.
  void ForEachOperation(const std::function<void(const Operation&, ObjectKind, ObjectRecord*,
                                                 const std::string&)>& body) {
    Card card;
    Fill(&card);
    Event event;
    Fill(&event);
    ToDo todo;
    Fill(&todo);
    for (const auto& [kind, record] :
         {std::pair<ObjectKind, ObjectRecord*>{KIND_CONTACT, card.get()},
          {KIND_CALENDAR, event.get()},
          {KIND_CALENDAR, todo.get()}}) {
      for (const Operation& operation : kOperations) {
        const std::string id = Add(kind, record);
        body(operation, kind, record, id);
      }
    }
  }
};

TEST_F(FailingCallsTest, EveryCallOfTheDevice) {
  std::size_t failures = 0;
  ForEachOperation([&](const Operation& operation, ObjectKind kind, ObjectRecord* record,
                       const std::string& id) {
    Strings calls;
    {
      const CallWatch watch;
      ASSERT_EQ(operation.run(kind, record, id, nullptr), TAMU_OK);
      calls = watch.calls();
    }
    std::size_t last_save = calls.size();
    for (std::size_t i = 0; i < calls.size(); ++i) {
      if (calls[i].ends_with("::Save")) last_save = i;
    }
    const std::int64_t objects = device::LiveObjects();
    const std::int64_t strings = platform::SysLiveStrings();
    const std::size_t blocks = MEM_LiveBlocks();
    for (std::size_t n = 0; n < calls.size(); ++n) {
      const std::string what = std::string(operation.name) + " " + calls[n];
      ASSERT_EQ(operation.run(kind, record, id, nullptr), TAMU_OK) << "repairs the item";
      char id_out[16] = "before";
      TamuResult result = 0;
      {
        const CallWatch watch(std::uint64_t{n} + 1);
        result = operation.run(kind, record, id, id_out);
        ASSERT_GT(watch.calls().size(), n) << what;
        EXPECT_EQ(watch.calls()[n], calls[n]);
      }
      ++failures;
      EXPECT_EQ(result, Expected(operation.name, calls[n], n == last_save)) << what;
      if (std::string(operation.name) == "add") {
        const bool no_id = result != TAMU_OK || calls[n].ends_with("::get_Oid");
        EXPECT_EQ(std::strlen(id_out), no_id ? 0U : 8U) << what;
      }
      EXPECT_EQ(device::LiveObjects(), objects) << what;
      EXPECT_EQ(platform::SysLiveStrings(), strings) << what;
      EXPECT_EQ(MEM_LiveBlocks(), blocks) << what;
    }
  });
  EXPECT_GT(failures, 280U);
}

TEST_F(FailingCallsTest, EveryCallOfAWalk) {
  ForEachOperation(
      [&](const Operation& operation, ObjectKind kind, ObjectRecord* record, const std::string&) {
        if (std::string(operation.name) != "find") return;
        const auto run = [&](std::uint64_t n, Strings* calls) {
          testing::CallHookScope hook;
          hook.Answer("IExactFind::FindExact", platform::hr::kNotImplemented);
          if (n != 0) hook.AnswerNth(n, platform::hr::kFail);
          char id_out[16] = "before";
          const std::uint32_t found = POL_FindObject(kind, record, id_out, 0);
          EXPECT_EQ(found == 0, std::string(id_out) == "before" &&
                                    hook.struck().find("get_Oid") == std::string::npos);
          *calls = hook.calls();
        };
        Strings calls;
        run(0, &calls);
        const std::int64_t objects = device::LiveObjects();
        const std::int64_t strings = platform::SysLiveStrings();
        for (std::size_t n = 1; n <= calls.size(); ++n) {
          Strings ignored;
          run(n, &ignored);
          EXPECT_EQ(device::LiveObjects(), objects) << calls[n - 1];
          EXPECT_EQ(platform::SysLiveStrings(), strings) << calls[n - 1];
        }
      });
}

TEST_F(FailingCallsTest, EveryService) {
  ForEachOperation([&](const Operation& operation, ObjectKind kind, ObjectRecord* record,
                       const std::string& id) {
    const std::int64_t objects = device::LiveObjects();
    const std::int64_t strings = platform::SysLiveStrings();
    const std::size_t blocks = MEM_LiveBlocks();
    for (platform::ServiceBase* service : platform::AllServices()) {
      service->ResetCount();
      ASSERT_EQ(operation.run(kind, record, id, nullptr), TAMU_OK);
      const std::uint64_t calls = service->calls();
      for (std::uint64_t n = 1; n <= calls; ++n) {
        const platform::ScopedFailure failure(*service, n);
        const TamuResult result = operation.run(kind, record, id, nullptr);
        EXPECT_TRUE(result == TAMU_OK || std::string(operation.name) == "find" ||
                    result == TAMU_GENERAL_PIM_ERROR || result == TAMU_OBJECT_NOT_FOUND)
            << result;
        EXPECT_EQ(device::LiveObjects(), objects) << service->name() << ' ' << operation.name;
        EXPECT_EQ(platform::SysLiveStrings(), strings) << service->name() << ' ' << operation.name;
        EXPECT_EQ(MEM_LiveBlocks(), blocks) << service->name() << ' ' << operation.name;
      }
    }
  });
}

TEST_F(FailingCallsTest, EveryAllocationOfARecord) {
  ForEachOperation([&](const Operation& operation, ObjectKind kind, ObjectRecord* record,
                       const std::string& id) {
    const std::int64_t objects = device::LiveObjects();
    const std::int64_t strings = platform::SysLiveStrings();
    const std::size_t blocks = MEM_LiveBlocks();
    bool struck = true;
    for (std::uint64_t n = 1; struck; ++n) {
      MEM_FailNth(n, n % 2 == 0);
      EXPECT_EQ(operation.run(kind, record, id, nullptr), TAMU_OK) << operation.name;
      struck = MEM_FailureStruck();
      MEM_FailNth(0);
      EXPECT_EQ(device::LiveObjects(), objects) << operation.name;
      EXPECT_EQ(platform::SysLiveStrings(), strings) << operation.name;
      EXPECT_EQ(MEM_LiveBlocks(), blocks) << operation.name;
    }
  });
}

class FailingOpenTest : public testing::DeviceTest {};

TEST_F(FailingOpenTest, EveryCallOfTheDevice) {
  Strings calls;
  {
    const CallWatch watch;
    ASSERT_EQ(POL_Open(), TAMU_OK);
    calls = watch.calls();
  }
  ASSERT_EQ(POL_Close(), TAMU_OK);
  const std::int64_t objects = device::LiveObjects();
  for (std::size_t n = 0; n < calls.size(); ++n) {
    const LogCapture log;
    TamuResult result = 0;
    {
      const CallWatch watch(std::uint64_t{n} + 1);
      result = POL_Open();
    }
    const bool logon = calls[n] == "IPOutlookApp::Logon";
    const bool matters = logon || calls[n] == "IMAPISession::GetMsgStoresTable";
    EXPECT_EQ(result, matters ? TamuResult{TAMU_GENERAL_PIM_ERROR} : TamuResult{TAMU_OK})
        << calls[n];
    EXPECT_EQ(log.Has("TAMU:  POOM 'Logon' failed (code=0x80004005)"), logon);
    EXPECT_EQ(POL_Close(), TAMU_OK);
    EXPECT_EQ(device::LiveObjects(), objects) << calls[n];
  }
}

TEST_F(FailingOpenTest, EveryServiceAndThenClosing) {
  const std::int64_t objects = device::LiveObjects();
  for (platform::ServiceBase* service : platform::AllServices()) {
    // What is not freed is lost: that is all that these two can fail at.
    if (service == &platform::MAPIFreeBuffer || service == &platform::FreeProws) continue;
    service->ResetCount();
    ASSERT_EQ(POL_Open(), TAMU_OK);
    const std::uint64_t calls = service->calls();
    ASSERT_EQ(POL_Close(), TAMU_OK);
    for (std::uint64_t n = 1; n <= calls; ++n) {
      {
        const platform::ScopedFailure failure(*service, n);
        const TamuResult result = POL_Open();
        EXPECT_TRUE(result == TAMU_OK || result == TAMU_GENERAL_PIM_ERROR) << service->name();
      }
      EXPECT_EQ(POL_Close(), TAMU_OK);
      EXPECT_EQ(device::LiveObjects(), objects) << service->name() << ' ' << n;
    }
  }
}

}  // namespace
}  // namespace tamu
