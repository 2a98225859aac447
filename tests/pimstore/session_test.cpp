#include "pimstore/session.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstring>

#include "mailstore/session.h"
#include "pimstore/find.h"
#include "pimstore/store_session.h"
#include "platform/cemapi.h"
#include "platform/linux/mapi_buffer.h"
#include "platform/rich_ink.h"

namespace tamu {
namespace {

using platform::ComPtr;
using platform::IAppointment;
using platform::IContact;
using platform::ITask;
using testing::CallWatch;
using testing::Card;
using testing::Event;
using testing::Line;
using testing::LogCapture;
using testing::Note;
using testing::ToDo;
using C = ContactShape;
using E = EventShape;
using T = ToDoShape;
using Strings = std::vector<std::string>;

class OpenTest : public testing::DeviceTest {
 protected:
  // The library's own lines: those of the mail store are its own matter.
  static Strings OwnLines(const LogCapture& log) {
    Strings lines;
    for (const LogCapture::Line& line : log.lines()) {
      if (line.text.starts_with("TAMU:")) lines.push_back(line.text);
    }
    return lines;
  }
  static bool HasError(const LogCapture& log, const std::string& text) {
    for (const LogCapture::Line& line : log.lines()) {
      if (line.text == text) return line.severity == LogSeverity::kError;
    }
    return false;
  }
};

TEST_F(OpenTest, LogsOnAndOpensTheMailStoreAndTheControl) {
  const LogCapture log;
  const CallWatch watch;
  platform::InitRichInkDLL.ResetCount();
  EXPECT_EQ(POL_Open(), TAMU_OK);
  EXPECT_EQ(watch.calls().at(0), "IPOutlookApp::Logon");
  EXPECT_NE(POL_Application(), nullptr);
  EXPECT_NE(gpInBoxFolder, nullptr);
  EXPECT_EQ(platform::InitRichInkDLL.calls(), 1U);
  EXPECT_EQ(OwnLines(log), Strings{"TAMU:  POL_Open()"});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kInformation);
}

TEST_F(OpenTest, TheApplicationIsMadeInThisProcess) {
  const platform::ScopedOverride<platform::HRESULT(const platform::GUID&, platform::IUnknown*,
                                                   std::uint32_t, const platform::GUID&, void**)>
      creation(platform::CoCreateInstance,
               [](const platform::GUID& clsid, platform::IUnknown* outer, std::uint32_t context,
                  const platform::GUID& iid, void** object) -> platform::HRESULT {
                 EXPECT_EQ(clsid, platform::CLSID_Application);
                 EXPECT_EQ(outer, nullptr);
                 EXPECT_EQ(context, 1U);
                 EXPECT_EQ(iid, platform::IID_IPOutlookApp);
                 *object = nullptr;
                 return static_cast<platform::HRESULT>(0x80040154U);
               });
  const LogCapture log;
  EXPECT_EQ(POL_Open(), TAMU_GENERAL_PIM_ERROR);
  EXPECT_TRUE(HasError(log,
                       "TAMU:  Unable to get application object from POOM interface. "
                       "(code=0x80040154)"));
}

TEST_F(OpenTest, WithoutAnObjectModelNothingIsHeld) {
  const LogCapture log;
  const platform::ScopedFailure failure(platform::CoCreateInstance);
  EXPECT_EQ(POL_Open(), TAMU_GENERAL_PIM_ERROR);
  EXPECT_EQ(POL_Application(), nullptr);
  EXPECT_EQ(gpSession, nullptr) << "the mail store is not opened";
  ASSERT_EQ(log.lines().size(), 2U);
  EXPECT_TRUE(log.lines()[1].text.starts_with(
      "TAMU:  Unable to get application object from POOM interface. (code=0x8"))
      << log.lines()[1].text;
  EXPECT_EQ(log.lines()[1].severity, LogSeverity::kError);
}

TEST_F(OpenTest, WithoutALogonNothingIsHeld) {
  const LogCapture log;
  {
    const CallWatch watch(std::string("IPOutlookApp::Logon"));
    EXPECT_EQ(POL_Open(), TAMU_GENERAL_PIM_ERROR);
  }
  EXPECT_EQ(POL_Application(), nullptr);
  EXPECT_EQ(device::LiveObjects(), 0);
  EXPECT_EQ(gpSession, nullptr);
  EXPECT_TRUE(HasError(log, "TAMU:  POOM 'Logon' failed (code=0x80004001)"));
}

TEST_F(OpenTest, WithoutAMailStoreTheSessionStaysOpenKeptOnPurpose) {
  platform::InitRichInkDLL.ResetCount();
  {
    const platform::ScopedFailure failure(platform::MAPILogonEx);
    EXPECT_EQ(POL_Open(), TAMU_GENERAL_PIM_ERROR);
  }
  EXPECT_NE(POL_Application(), nullptr);
  EXPECT_EQ(platform::InitRichInkDLL.calls(), 0U);
  Card card;
  EXPECT_EQ(POL_AddObject(KIND_CONTACT, card.get(), nullptr), TAMU_OK);
}

TEST_F(OpenTest, OpeningAgainDoesNotLogOnButOpensTheMailStoreAnew) {
  ASSERT_EQ(POL_Open(), TAMU_OK);
  platform::IPOutlookApp* const application = POL_Application();
  // What the mail store holds is overwritten by the second opening and never released.
  std::vector<platform::IUnknown*> overwritten = {gpSession, gpInBoxFolder, gpSentBoxFolder,
                                                  gpOutBoxFolder};
  platform::CoCreateInstance.ResetCount();
  platform::InitRichInkDLL.ResetCount();
  {
    const CallWatch watch;
    EXPECT_EQ(POL_Open(), TAMU_OK);
    EXPECT_EQ(watch.Only({"IPOutlookApp::"}), Strings{});
  }
  EXPECT_EQ(POL_Application(), application);
  EXPECT_EQ(platform::CoCreateInstance.calls(), 0U);
  EXPECT_EQ(platform::InitRichInkDLL.calls(), 1U);
  EXPECT_NE(gpSession, overwritten[0]);
  for (platform::IUnknown* held : overwritten) held->Release();
  platform::MAPIUninitialize();
}

TEST_F(OpenTest, TheAlreadyOpenFlagMakesOpeningAgainDoNothing) {
  ASSERT_EQ(POL_Open(), TAMU_OK);
  platform::MAPILogonEx.ResetCount();
  g_pol_already_open = 1;
  EXPECT_EQ(POL_Open(), TAMU_OK);
  g_pol_already_open = 0;
  EXPECT_EQ(platform::MAPILogonEx.calls(), 0U);
}

TEST_F(OpenTest, TheAlreadyOpenFlagAloneOpensNothing) {
  g_pol_already_open = 1;
  EXPECT_EQ(POL_Open(), TAMU_OK);
  g_pol_already_open = 0;
  EXPECT_NE(POL_Application(), nullptr);
}

TEST_F(OpenTest, ClosingLogsOffAndClosesTheMailStore) {
  ASSERT_EQ(POL_Open(), TAMU_OK);
  const LogCapture log;
  {
    const CallWatch watch;
    EXPECT_EQ(POL_Close(), TAMU_OK);
    EXPECT_EQ(watch.calls().at(0), "IPOutlookApp::Logoff");
  }
  EXPECT_EQ(POL_Application(), nullptr);
  EXPECT_EQ(gpSession, nullptr);
  EXPECT_EQ(device::LiveObjects(), 0);
  EXPECT_EQ(OwnLines(log), Strings{"TAMU:  POL_Close()"});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kInformation);
}

TEST_F(OpenTest, ClosingWithoutASessionStillClosesTheMailStore) {
  platform::MAPIUninitialize.ResetCount();
  EXPECT_EQ(POL_Close(), TAMU_OK);
  EXPECT_EQ(platform::MAPIUninitialize.calls(), 1U);
}

TEST_F(OpenTest, BeforeOpeningItemsAnswer15) {
  Card card;
  Event event;
  ToDo todo;
  char id[16] = "before";
  for (ObjectRecord* record : {event.get(), todo.get()}) {
    EXPECT_EQ(POL_AddObject(KIND_CALENDAR, record, id), TAMU_PIM_NOT_OPENED);
    EXPECT_EQ(POL_ModifyObject(KIND_CALENDAR, "1", record), TAMU_PIM_NOT_OPENED);
  }
  EXPECT_EQ(POL_AddObject(KIND_CONTACT, card.get(), id), TAMU_PIM_NOT_OPENED);
  EXPECT_STREQ(id, "");
  EXPECT_EQ(POL_ModifyObject(KIND_CONTACT, "1", card.get()), TAMU_PIM_NOT_OPENED);
  EXPECT_EQ(POL_GetObjectById(KIND_CONTACT, "1", card.get()), TAMU_PIM_NOT_OPENED);
  EXPECT_EQ(POL_GetObjectById(KIND_CALENDAR, "1", card.get()), TAMU_PIM_NOT_OPENED);
}

TEST_F(OpenTest, BeforeOpeningMessagesAnswerForTheirFolder) {
  ObjectRecord record{};
  char id[9] = "before";
  EXPECT_EQ(POL_AddObject(KIND_MSG_INBOX, &record, id), TAMU_GENERAL_PIM_ERROR);
  EXPECT_STREQ(id, "");
  EXPECT_EQ(POL_ModifyObject(KIND_MSG_INBOX, "00", &record), TAMU_GENERAL_PIM_ERROR);
  const LogCapture log;
  EXPECT_EQ(POL_FindObject(KIND_MSG_INBOX, &record, nullptr, 0), 0U);
  EXPECT_TRUE(HasError(log, "MAPI:  MAPI_FindMail error - lpFolder is NULL"));
}

using OperationsTest = testing::SessionTest;

TEST_F(OperationsTest, AnIdIsReadWithoutZerosAndInUpperCaseToo) {
  Card card;
  card.With(&C::prop_fn, "Name");
  std::string id;
  for (int i = 0; i < 10; ++i) id = Add(KIND_CONTACT, card.get());
  EXPECT_EQ(id, "0000000a");
  for (const char* spelling : {"0000000a", "a", "A", "0xA", " +0a", "azz", "a "}) {
    Card back;
    EXPECT_EQ(POL_GetObjectById(KIND_CONTACT, spelling, back.get()), TAMU_OK) << spelling;
    EXPECT_EQ(Line(back->prop_fn), ":Name");
    EXPECT_EQ(back->luid, id);
  }
}

TEST_F(OperationsTest, AnIdThatCannotBeReadGives9) {
  Card card;
  for (const char* id : {"zz", "", " ", "x", "-", "+", "g1"}) {
    for (const ObjectKind kind : {0U, 1U, 3U, 4U, 5U, 6U}) {
      EXPECT_EQ(POL_ModifyObject(kind, id, card.get()), TAMU_INVALID_ID) << id << kind;
      EXPECT_EQ(POL_GetObjectById(kind, id, card.get()), TAMU_INVALID_ID) << id << kind;
    }
  }
  for (const ObjectKind kind : {0U, 1U, 2U, 3U, 4U, 5U, 6U}) {
    EXPECT_EQ(POL_ModifyObject(kind, nullptr, card.get()), TAMU_INVALID_ID) << kind;
    EXPECT_EQ(POL_GetObjectById(kind, nullptr, card.get()), TAMU_INVALID_ID) << kind;
  }
}

TEST_F(OperationsTest, UnknownKindsGive16) {
  Card card;
  char id[16] = "before";
  EXPECT_EQ(POL_AddObject(6, card.get(), id), TAMU_UNSUPPORTED_TYPE);
  EXPECT_STREQ(id, "");
  EXPECT_EQ(POL_ModifyObject(6, "1", card.get()), TAMU_UNSUPPORTED_TYPE);
  EXPECT_EQ(POL_GetObjectById(6, "1", card.get()), TAMU_UNSUPPORTED_TYPE);
}

TEST_F(OperationsTest, FetchingMessagesGives16KeptOnPurpose) {
  ObjectRecord record{};
  for (const ObjectKind kind : {3U, 4U, 5U}) {
    EXPECT_EQ(POL_GetObjectById(kind, "1", &record), TAMU_UNSUPPORTED_TYPE);
  }
}

TEST_F(OperationsTest, AddingAMessageReportsAnEmptyIdKeptOnPurpose) {
  ObjectRecord record{};
  std::strcpy(record.message.subject, "Subject");
  std::strcpy(record.message.date, "Wed, 31 Dec 2003 23:59:59 GMT");
  char id[9] = "before";  // all the room that a caller has to have
  EXPECT_EQ(POL_AddObject(KIND_MSG_INBOX, &record, id), TAMU_OK);
  EXPECT_STREQ(id, "");
  char found[256] = "";
  EXPECT_EQ(POL_FindObject(KIND_MSG_INBOX, &record, found, 0), 1U);
  EXPECT_EQ(std::strlen(found), 32U);
  EXPECT_EQ(POL_ModifyObject(KIND_MSG_INBOX, found, &record), TAMU_OK);
  EXPECT_EQ(POL_ModifyObject(KIND_MSG_INBOX, "abc", &record), TAMU_INVALID_ID) << "an odd length";
  EXPECT_EQ(POL_ModifyObject(KIND_MSG_INBOX, "ab", &record), TAMU_GENERAL_PIM_ERROR);
}

TEST_F(OperationsTest, EveryEntryIsLogged) {
  Card card;
  const LogCapture log;
  static_cast<void>(POL_AddObject(KIND_CONTACT, card.get(), nullptr));
  static_cast<void>(POL_ModifyObject(KIND_CONTACT, "1", card.get()));
  Card back;
  static_cast<void>(POL_GetObjectById(KIND_CONTACT, "00000001", back.get()));
  static_cast<void>(POL_GetObjectById(KIND_CONTACT, "zz", back.get()));
  ASSERT_EQ(log.texts(),
            (Strings{"TAMU:  POL_AddObject()", "TAMU:  POL_ModifyObject()",
                     "TAMU:  POL_GetObjectById('00000001')", "TAMU:  POL_GetObjectById('zz')"}));
  for (const LogCapture::Line& line : log.lines()) {
    EXPECT_EQ(line.severity, LogSeverity::kInformation);
  }
}

TEST_F(OperationsTest, ModifyingMergesARecordIntoTheItem) {
  Card card;
  card.With(&C::prop_fn, "Name").With(&C::prop_title, "Boss");
  const std::string id = Add(KIND_CONTACT, card.get());
  Card changed;
  changed.With(&C::prop_fn, "Other");
  EXPECT_EQ(POL_ModifyObject(KIND_CONTACT, id.c_str(), changed.get()), TAMU_OK);
  Card back;
  EXPECT_EQ(POL_GetObjectById(KIND_CONTACT, id.c_str(), back.get()), TAMU_OK);
  EXPECT_EQ(Line(back->prop_fn), ":Other");
  EXPECT_EQ(Line(back->prop_title), ":Boss");
}

TEST_F(OperationsTest, CalendarItemsAreFetchedAsWhatTheyAre) {
  Event event;
  event.With(&E::prop_summary, "Event").With(&E::prop_dtstart, "20030402T100000");
  ToDo todo;
  todo.With(&T::prop_summary, "Task");
  todo->component = 77;  // whatever is no event is a task
  const std::string event_id = Add(KIND_CALENDAR, event.get());
  const std::string task_id = Add(KIND_CALENDAR, todo.get());
  todo->component = COMPONENT_TODO;
  EXPECT_TRUE(Stored<IAppointment>(event_id));
  EXPECT_TRUE(Stored<ITask>(task_id));
  Event event_back;
  EXPECT_EQ(POL_GetObjectById(KIND_CALENDAR, event_id.c_str(), event_back.get()), TAMU_OK);
  EXPECT_EQ(event_back->component, COMPONENT_EVENT);
  EXPECT_EQ(Line(event_back->prop_summary), ":Event");
  ToDo task_back;
  EXPECT_EQ(POL_GetObjectById(KIND_CALENDAR, task_id.c_str(), task_back.get()), TAMU_OK);
  EXPECT_EQ(task_back->component, COMPONENT_TODO);
  EXPECT_EQ(Line(task_back->prop_summary), ":Task");
}

TEST_F(OperationsTest, AnIdThatNoItemHasGives6) {
  Card card;
  ToDo todo;
  for (const char* id : {"1", "0", "ffffffff"}) {
    EXPECT_EQ(POL_ModifyObject(KIND_CONTACT, id, card.get()), TAMU_OBJECT_NOT_FOUND);
    EXPECT_EQ(POL_ModifyObject(KIND_CALENDAR, id, todo.get()), TAMU_OBJECT_NOT_FOUND);
    EXPECT_EQ(POL_GetObjectById(KIND_CONTACT, id, card.get()), TAMU_OBJECT_NOT_FOUND);
    EXPECT_EQ(POL_GetObjectById(KIND_CALENDAR, id, todo.get()), TAMU_OBJECT_NOT_FOUND);
  }
}

TEST_F(OperationsTest, ContactsAndCalendarItemsAreNotTakenForEachOther) {
  Card card;
  ToDo todo;
  const std::string contact = Add(KIND_CONTACT, card.get());
  const std::string task = Add(KIND_CALENDAR, todo.get());
  EXPECT_EQ(POL_ModifyObject(KIND_CONTACT, task.c_str(), card.get()), TAMU_OBJECT_NOT_FOUND);
  EXPECT_EQ(POL_ModifyObject(KIND_CALENDAR, contact.c_str(), todo.get()), TAMU_OBJECT_NOT_FOUND);
  EXPECT_EQ(POL_GetObjectById(KIND_CONTACT, task.c_str(), card.get()), TAMU_OBJECT_NOT_FOUND);
  EXPECT_EQ(POL_GetObjectById(KIND_CALENDAR, contact.c_str(), todo.get()), TAMU_OBJECT_NOT_FOUND);
}

TEST_F(OperationsTest, ARecordOfTheWrongShapeChangesNothingAndSavingDecides) {
  Event event;
  event.With(&E::prop_summary, "Event").With(&E::prop_dtstart, "20030402T100000");
  ToDo todo;
  todo.With(&T::prop_summary, "Task");
  const std::string event_id = Add(KIND_CALENDAR, event.get());
  const std::string task_id = Add(KIND_CALENDAR, todo.get());
  for (const auto& [id, record, save] : {std::tuple{event_id, todo.get(), "IAppointment::Save"},
                                         std::tuple{task_id, event.get(), "ITask::Save"}}) {
    {
      const CallWatch watch;
      EXPECT_EQ(POL_ModifyObject(KIND_CALENDAR, id.c_str(), record), TAMU_OK);
      EXPECT_EQ(watch.calls(), (Strings{"IPOutlookApp::GetItemFromOid", save}));
    }
    const CallWatch watch{std::string(save)};
    EXPECT_EQ(POL_ModifyObject(KIND_CALENDAR, id.c_str(), record), TAMU_GENERAL_PIM_ERROR);
  }
  EXPECT_EQ(Text(Stored<IAppointment>(event_id), &IAppointment::get_Subject), u"Event");
  EXPECT_EQ(Text(Stored<ITask>(task_id), &ITask::get_Subject), u"Task");
}

TEST_F(OperationsTest, AnItemThatCannotBeSavedGives14AndNoId) {
  Event event;
  event.With(&E::prop_dtstart, "20030402T100000").With(&E::prop_dtend, "20030401T100000");
  char id[16] = "before";
  EXPECT_EQ(POL_AddObject(KIND_CALENDAR, event.get(), id), TAMU_GENERAL_PIM_ERROR);
  EXPECT_STREQ(id, "");
}

}  // namespace
}  // namespace tamu
