#include "pimstore/find.h"

#include <gtest/gtest.h>

#include "pimstore/plain_device.h"
#include "pimstore/store_session.h"

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

// How a store can be searched: by its index, or, where that is refused or not there, by a walk.
enum class Way { kIndex, kRefusedIndex, kPlainDevice };

// A session over a device without an index.
class PlainSession {
 public:
  explicit PlainSession(testing::TestDevice* device) {
    Device() = device;
    EXPECT_EQ(POL_Close(), TAMU_OK);
    EXPECT_EQ(POL_Open(), TAMU_OK);
    testing::Restrictions().clear();
  }

 private:
  static testing::TestDevice*& Device() {
    static testing::TestDevice* device = nullptr;
    return device;
  }
  static platform::HRESULT Create(const platform::GUID&, platform::IUnknown*, std::uint32_t,
                                  const platform::GUID& iid, void** object) {
    platform::ComPtr<platform::IPOutlookApp> real;
    const platform::HRESULT result = Device()->CreateApplication(iid, real.put_void());
    *object =
        platform::Failed(result)
            ? nullptr
            : static_cast<platform::IPOutlookApp*>(new testing::PlainApplication(std::move(real)));
    return result;
  }

  platform::ScopedOverride<platform::HRESULT(const platform::GUID&, platform::IUnknown*,
                                             std::uint32_t, const platform::GUID&, void**)>
      creator_{platform::CoCreateInstance, &Create};
};

class FindTest : public testing::SessionTest, public ::testing::WithParamInterface<Way> {
 protected:
  FindTest() {
    if (GetParam() == Way::kPlainDevice) plain_.emplace(&test_device());
    if (GetParam() == Way::kRefusedIndex) {
      refusal_.emplace(std::string("IExactFind::FindExact"));
    }
  }

  // The id of the object that is found, "none" without one.
  static std::string Find(ObjectKind kind, ObjectRecord* record) {
    char id[16] = "untouched";
    const std::uint32_t found = POL_FindObject(kind, record, id, 0);
    EXPECT_EQ(POL_FindObject(kind, record, nullptr, 7), found);
    if (found == 1) return id;
    EXPECT_EQ(found, 0U);
    EXPECT_STREQ(id, "untouched");
    return "none";
  }
  static std::string FindName(const char* name) {
    Card card;
    card.With(&C::prop_n, name);
    return Find(KIND_CONTACT, card.get());
  }
  static std::string AddName(const char* name) {
    Card card;
    card.With(&C::prop_n, name);
    return Add(KIND_CONTACT, card.get());
  }

 private:
  std::optional<PlainSession> plain_;
  std::optional<CallWatch> refusal_;
};

INSTANTIATE_TEST_SUITE_P(Ways, FindTest,
                         ::testing::Values(Way::kIndex, Way::kRefusedIndex, Way::kPlainDevice));

TEST_P(FindTest, AContactIsFoundByItsFiveNames) {
  AddName("Berg;Anna;;;");
  const std::string id = AddName("Berg;Anna;Maria;Dr.;Jr.");
  AddName("Berg;Anna;Maria;Dr.;Jr.");
  EXPECT_EQ(FindName("Berg;Anna;Maria;Dr.;Jr."), id) << "the first one";
  EXPECT_EQ(FindName("Berg;Anna;Maria;Dr."), "none");
  EXPECT_EQ(FindName("Berg;;Maria;Dr.;Jr."), "none");
}

TEST_P(FindTest, AnEmptyNameMeetsEmptyFieldsAlone) {
  AddName("Berg");
  EXPECT_EQ(FindName(""), "none");
  const std::string id = AddName("");
  EXPECT_EQ(FindName(""), id);
  EXPECT_EQ(FindName(";;;;"), id);
  Card card;
  EXPECT_EQ(Find(KIND_CONTACT, card.get()), id);
}

TEST_P(FindTest, ContactsThatDifferInCaseDoNotMatch) {
  const std::string lower = AddName("berg;Anna");
  const std::string upper = AddName("BERG;Anna");
  EXPECT_EQ(FindName("berg;Anna"), lower);
  EXPECT_EQ(FindName("BERG;Anna"), upper);
  EXPECT_EQ(FindName("Berg;Anna"), "none");
}

TEST_P(FindTest, ATaskIsFoundByItsSummaryAlone) {
  ToDo todo;
  todo.With(&T::prop_summary, "Task").With(&T::prop_due, "20030101");
  const std::string id = Add(KIND_CALENDAR, todo.get());
  ToDo again;
  again.With(&T::prop_summary, "Task").With(&T::prop_due, "20040101");
  Add(KIND_CALENDAR, again.get());
  EXPECT_EQ(Find(KIND_CALENDAR, again.get()), id);
  ToDo other;
  other.With(&T::prop_summary, "task");
  EXPECT_EQ(Find(KIND_CALENDAR, other.get()), "none");
}

TEST_P(FindTest, ATaskWithoutASummaryIsNotFound) {
  ToDo todo;
  todo.With(&T::prop_summary, "");
  Add(KIND_CALENDAR, todo.get());
  EXPECT_EQ(Find(KIND_CALENDAR, todo.get()), "none");
  ToDo none;
  EXPECT_EQ(Find(KIND_CALENDAR, none.get()), "none");
}

TEST_P(FindTest, AnAppointmentIsFoundByItsStartAndSummary) {
  Event event;
  event.With(&E::prop_summary, "Event")
      .With(&E::prop_dtstart, "20030402T100000")
      .With(&E::prop_description, "Text");
  const std::string id = Add(KIND_CALENDAR, event.get());
  Event same;
  same.With(&E::prop_summary, "Event").With(&E::prop_dtstart, "20030402T090000Z");
  EXPECT_EQ(Find(KIND_CALENDAR, same.get()), id);
  Event later;
  later.With(&E::prop_summary, "Event").With(&E::prop_dtstart, "20030402T100100");
  EXPECT_EQ(Find(KIND_CALENDAR, later.get()), "none");
  Event other;
  other.With(&E::prop_summary, "EVENT").With(&E::prop_dtstart, "20030402T100000");
  EXPECT_EQ(Find(KIND_CALENDAR, other.get()), "none");
}

TEST_P(FindTest, AnAppointmentWithoutSummaryIsFoundByItsDescription) {
  Event event;
  event.With(&E::prop_summary, "Event")
      .With(&E::prop_dtstart, "20030402T100000")
      .With(&E::prop_description, "Text");
  const std::string id = Add(KIND_CALENDAR, event.get());
  Event by_text;
  by_text.With(&E::prop_dtstart, "20030402T100000").With(&E::prop_description, "Text");
  EXPECT_EQ(Find(KIND_CALENDAR, by_text.get()), id);
  Event without;
  without.With(&E::prop_dtstart, "20030402T100000").With(&E::prop_summary, "");
  EXPECT_EQ(Find(KIND_CALENDAR, without.get()), "none");
  Event empty;
  empty.With(&E::prop_dtstart, "20030402T100000");
  const std::string empty_id = Add(KIND_CALENDAR, empty.get());
  EXPECT_EQ(Find(KIND_CALENDAR, without.get()), empty_id);
}

TEST_P(FindTest, TasksAndAppointmentsAreNotTakenForEachOther) {
  Event event;
  event.With(&E::prop_summary, "Same").With(&E::prop_dtstart, "20030402T100000");
  Add(KIND_CALENDAR, event.get());
  ToDo todo;
  todo.With(&T::prop_summary, "Same").With(&T::prop_dtstart, "20030402T100000");
  EXPECT_EQ(Find(KIND_CALENDAR, todo.get()), "none");
}

TEST_P(FindTest, AnUnknownKindIsNotFound) {
  Card card;
  EXPECT_EQ(Find(6, card.get()), "none");
  EXPECT_EQ(Find(0xFFFFFFFFU, card.get()), "none");
}

using FindCallsTest = testing::SessionTest;

TEST_F(FindCallsTest, TheEntryIsLogged) {
  Card card;
  const LogCapture log;
  EXPECT_EQ(POL_FindObject(KIND_CONTACT, card.get(), nullptr, 0), 0U);
  ASSERT_EQ(log.texts(), Strings{"TAMU:  POL_FindObject()"});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kInformation);
}

TEST_F(FindCallsTest, WithoutASessionNothingIsFound) {
  Card card;
  Add(KIND_CONTACT, card.get());
  ASSERT_EQ(POL_Close(), TAMU_OK);
  EXPECT_EQ(POL_FindObject(KIND_CONTACT, card.get(), nullptr, 0), 0U);
}

TEST_F(FindCallsTest, TheIndexIsAskedFirstAndTheWalkComesAfterItsRefusal) {
  Card card;
  card.With(&C::prop_n, "Berg");
  Add(KIND_CONTACT, card.get());
  {
    const CallWatch watch;
    EXPECT_EQ(POL_FindObject(KIND_CONTACT, card.get(), nullptr, 0), 1U);
    EXPECT_EQ(watch.Only({"Find"}), Strings{"FindExact"});
  }
  const CallWatch watch(std::string("IExactFind::FindExact"));
  EXPECT_EQ(POL_FindObject(KIND_CONTACT, card.get(), nullptr, 0), 1U);
  EXPECT_EQ(watch.Only({"Find"}), (Strings{"FindExact", "Find"}));
}

TEST_F(FindCallsTest, ARestrictionNamesThePartsInItsOwnOrder) {
  const PlainSession session(&test_device());
  const std::pair<const char*, const char16_t*> names[] = {
      {"L;F;M;T;S",
       u"[Title]=\"T\" AND [FirstName]=\"F\" AND [MiddleName]=\"M\" AND [LastName]=\"L\" AND "
       u"[Suffix]=\"S\""},
      {";F;;;S", u"[FirstName]=\"F\" AND [Suffix]=\"S\""},
      {"L", u"[LastName]=\"L\""},
      {"A \"B\" C", u"[LastName]=\"A \"B\" C\""},
      {"", u""},
  };
  for (const auto& [name, restriction] : names) {
    Card card;
    card.With(&C::prop_n, name);
    testing::Restrictions().clear();
    EXPECT_EQ(POL_FindObject(KIND_CONTACT, card.get(), nullptr, 0), 0U);
    EXPECT_EQ(testing::Restrictions(), std::vector<std::u16string>{restriction});
  }
}

TEST_F(FindCallsTest, QuotesInANameAreNoTroubleForTheIndex) {
  Card card;
  card.With(&C::prop_n, "Berg\";Anna \"Annie\" B.");
  const std::string id = Add(KIND_CONTACT, card.get());
  char found[16] = "";
  EXPECT_EQ(POL_FindObject(KIND_CONTACT, card.get(), found, 0), 1U);
  EXPECT_EQ(found, id);
}

}  // namespace
}  // namespace tamu
