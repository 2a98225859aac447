#include "device/pim/pim_fixture.h"

namespace tamu::testing {
namespace {

using Numbers = std::vector<std::int32_t>;

class CollectionContract : public PimContract {
 protected:
  static Numbers FoundContacts(const ComPtr<IPOutlookItemCollection>& items,
                               const std::u16string& restriction) {
    return Found<IContact>(items, restriction);
  }
};
TAMU_OVER_PIM_DEVICES(CollectionContract);

TEST_P(CollectionContract, GivesItsFoldersItemsByIndexInTheOrderOfIds) {
  AddContact(u"c");
  AddAppointment(u"", Day2004(1), Day2004(2));
  AddContact(u"a");
  AddContact(u"b");
  const ComPtr<IPOutlookItemCollection> items = Contacts();
  EXPECT_EQ(Oids<IContact>(items), (Numbers{1, 3, 4}));
  for (const std::int32_t index : {0, -1, 4}) {
    IDispatch* item = nullptr;
    EXPECT_EQ(items->Item(index, &item), hr::kInvalidArgument);
    EXPECT_EQ(items->Remove(index), hr::kInvalidArgument);
  }
  IUnknown* enumerator = nullptr;
  EXPECT_EQ(items->get__NewEnum(&enumerator), hr::kNotImplemented);
}

TEST_P(CollectionContract, IsALiveView) {
  const ComPtr<IPOutlookItemCollection> items = Contacts();
  const ComPtr<IContact> first = AddContact(u"a");
  EXPECT_EQ(Oids<IContact>(items), (Numbers{1}));
  AddContact(u"b");
  EXPECT_EQ(Oids<IContact>(items), (Numbers{1, 2}));
  ASSERT_EQ(first->Delete(), hr::kOk);
  EXPECT_EQ(Oids<IContact>(items), (Numbers{2}));
  EXPECT_EQ(Got(items, &IPOutlookItemCollection::get_Count), 1);
}

TEST_P(CollectionContract, AddMakesAnUnsavedItem) {
  const ComPtr<IPOutlookItemCollection> items = Items(platform::kTasksFolder);
  IDispatch* item = nullptr;
  ASSERT_EQ(items->Add(&item), hr::kOk);
  const ComPtr<ITask> task(static_cast<ITask*>(item));
  EXPECT_EQ(Got(items, &IPOutlookItemCollection::get_Count), 0);
  ASSERT_EQ(task->Save(), hr::kOk);
  EXPECT_EQ(Got(items, &IPOutlookItemCollection::get_Count), 1);
}

TEST_P(CollectionContract, RemoveDeletesFromTheStore) {
  for (const char16_t* name : {u"a", u"b", u"c", u"d"}) AddContact(name);
  const ComPtr<IPOutlookItemCollection> items = Contacts();
  ASSERT_EQ(items->Remove(2), hr::kOk);
  EXPECT_EQ(Oids<IContact>(items), (Numbers{1, 3, 4}));
  EXPECT_EQ(Oids<IContact>(Contacts()), (Numbers{1, 3, 4}));
  AddContact(u"e");
  for (std::int32_t i = 4; i >= 1; --i) ASSERT_EQ(items->Remove(i), hr::kOk);
  EXPECT_EQ(Got(Contacts(), &IPOutlookItemCollection::get_Count), 0);
}

TEST_P(CollectionContract, FindGoesThroughAllMatches) {
  AddContact(u"Smith", u"Ada");
  AddContact(u"Jones", u"Bob");
  AddContact(u"SMITH", u"Cid");
  const ComPtr<IPOutlookItemCollection> items = Contacts();
  EXPECT_EQ(FoundContacts(items, u"[LastName] = \"smith\""), (Numbers{1, 3}));
  EXPECT_EQ(FoundContacts(items, u"[LastName]=\"smith\" AND [FirstName]=\"CID\""), (Numbers{3}));
  EXPECT_EQ(FoundContacts(items, u"[LastName]=\"Jones\" OR [FirstName]=\"ada\""), (Numbers{1, 2}));
  EXPECT_EQ(FoundContacts(items, u""), (Numbers{1, 2, 3}));
  EXPECT_EQ(FoundContacts(items, u"[Oid] = 2"), (Numbers{2}));
  EXPECT_EQ(FoundContacts(items, u"[MiddleName] <> \"x\""), Numbers{});
  IDispatch* item = nullptr;
  EXPECT_EQ(items->FindNext(&item), hr::kOk);
  EXPECT_EQ(item, nullptr);
}

TEST_P(CollectionContract, FindSeesWhatChangesOnTheWay) {
  for (int i = 0; i < 40; ++i) AddContact(u"same");
  const ComPtr<IPOutlookItemCollection> items = Contacts();
  IDispatch* item = nullptr;
  ASSERT_EQ(items->Find(Arg(u"[LastName]=\"same\""), &item), hr::kOk);
  ComPtr<IContact>(static_cast<IContact*>(item));
  ASSERT_EQ(Open<IContact>(2)->Delete(), hr::kOk);
  const ComPtr<IContact> changed = Open<IContact>(3);
  ASSERT_EQ(changed->put_LastName(Arg(u"other")), hr::kOk);
  ASSERT_EQ(changed->Save(), hr::kOk);
  AddContact(u"same");
  Numbers found;
  while (items->FindNext(&item) == hr::kOk && item != nullptr) {
    const ComPtr<IContact> contact(static_cast<IContact*>(item));
    found.push_back(Got(contact, &IContact::get_Oid));
  }
  ASSERT_EQ(found.size(), 38U);
  EXPECT_EQ(found.front(), 4);
  EXPECT_EQ(found.back(), 41);
}

TEST_P(CollectionContract, IndexesFollowItemsThatComeGoAndChange) {
  for (int i = 0; i < 3; ++i) AddContact(u"a");
  const ComPtr<IPOutlookItemCollection> items = Contacts();
  const auto oids = [&] {
    Numbers all;
    const std::int32_t count = Got(items, &IPOutlookItemCollection::get_Count);
    for (std::int32_t i = 1; i <= count; ++i) {
      IDispatch* item = nullptr;
      EXPECT_EQ(items->Item(i, &item), hr::kOk);
      const ComPtr<IContact> contact(static_cast<IContact*>(item));
      all.push_back(Got(contact, &IContact::get_Oid));
      EXPECT_EQ(contact->Save(), hr::kOk);
    }
    return all;
  };
  EXPECT_EQ(oids(), (Numbers{1, 2, 3}));
  ASSERT_EQ(Open<IContact>(2)->Delete(), hr::kOk);
  EXPECT_EQ(oids(), (Numbers{1, 3}));
  AddContact(u"b");
  EXPECT_EQ(oids(), (Numbers{1, 3, 4}));
  ASSERT_EQ(Open<IContact>(1)->Delete(), hr::kOk);
  AddContact(u"c");
  EXPECT_EQ(oids(), (Numbers{3, 4, 5}));
  ASSERT_EQ(items->Remove(2), hr::kOk);
  ASSERT_EQ(NewTask()->Save(), hr::kOk);
  EXPECT_EQ(oids(), (Numbers{3, 5}));
}

TEST_P(CollectionContract, BadRestrictionsAreRefused) {
  AddContact(u"x");
  const ComPtr<IPOutlookItemCollection> items = Contacts();
  IDispatch* item = nullptr;
  ComPtr<IPOutlookItemCollection> restricted;
  for (const char16_t* bad : {u"[LastName]", u"[Nothing]=\"x\"", u"[BodyInk]=\"x\"", u"x"}) {
    EXPECT_EQ(items->Find(Arg(bad), &item), hr::kInvalidArgument);
    EXPECT_EQ(item, nullptr);
    EXPECT_EQ(items->Restrict(Arg(bad), restricted.put()), hr::kInvalidArgument);
    EXPECT_FALSE(restricted);
  }
  EXPECT_EQ(items->Find(nullptr, &item), hr::kInvalidArgument);
  EXPECT_EQ(items->Restrict(nullptr, restricted.put()), hr::kInvalidArgument);
  EXPECT_EQ(items->FindNext(&item), hr::kUnexpected);
}

TEST_P(CollectionContract, RestrictGivesACollectionOfItsOwn) {
  AddContact(u"Smith", u"Ada");
  AddContact(u"Jones", u"Bob");
  AddContact(u"smith", u"Cid");
  const ComPtr<IPOutlookItemCollection> items = Contacts();
  ComPtr<IPOutlookItemCollection> smiths;
  ASSERT_EQ(items->Restrict(Arg(u"[LastName]=\"SMITH\""), smiths.put()), hr::kOk);
  EXPECT_EQ(Oids<IContact>(smiths), (Numbers{1, 3}));
  EXPECT_EQ(FoundContacts(smiths, u"[FirstName]=\"Bob\" OR [FirstName]=\"Cid\""), (Numbers{3}));
  ComPtr<IPOutlookItemCollection> ada;
  ASSERT_EQ(smiths->Restrict(Arg(u"[FirstName]=\"Ada\""), ada.put()), hr::kOk);
  EXPECT_EQ(Oids<IContact>(ada), (Numbers{1}));
  ComPtr<IPOutlookItemCollection> none;
  ASSERT_EQ(smiths->Restrict(Arg(u"[FirstName]=\"Bob\""), none.put()), hr::kOk);
  EXPECT_EQ(Got(none, &IPOutlookItemCollection::get_Count), 0);
  AddContact(u"Smith", u"Dan");
  EXPECT_EQ(Oids<IContact>(smiths), (Numbers{1, 3, 4}));
  ASSERT_EQ(smiths->Remove(2), hr::kOk);
  EXPECT_EQ(Oids<IContact>(smiths), (Numbers{1, 4}));
  EXPECT_EQ(Oids<IContact>(items), (Numbers{1, 2, 4}));
}

TEST_P(CollectionContract, SortsByOneProperty) {
  AddContact(u"delta");
  AddContact(u"Alpha");
  AddContact(u"charlie");
  AddContact(u"");
  AddContact(u"CHARLIE");
  const ComPtr<IPOutlookItemCollection> items = Contacts();
  ASSERT_EQ(items->Sort(Arg(u"[LastName]"), kVariantFalse), hr::kOk);
  EXPECT_EQ(Oids<IContact>(items), (Numbers{4, 2, 3, 5, 1}));
  EXPECT_EQ(FoundContacts(items, u"[LastName] > \"a\""), (Numbers{2, 3, 5, 1}));
  ASSERT_EQ(items->Sort(Arg(u"[LastName]"), 1), hr::kOk);
  EXPECT_EQ(Oids<IContact>(items), (Numbers{1, 3, 5, 2, 4}));
  ComPtr<IPOutlookItemCollection> restricted;
  ASSERT_EQ(items->Restrict(Arg(u"[LastName] > \"b\""), restricted.put()), hr::kOk);
  EXPECT_EQ(Oids<IContact>(restricted), (Numbers{1, 3, 5}));
  ASSERT_EQ(items->Remove(1), hr::kOk);
  EXPECT_EQ(Oids<IContact>(items), (Numbers{3, 5, 2, 4}));
  AddContact(u"bravo");
  EXPECT_EQ(Oids<IContact>(items), (Numbers{3, 5, 6, 2, 4}));
  ASSERT_EQ(items->Sort(Arg(u"[Oid]"), kVariantTrue), hr::kOk);
  EXPECT_EQ(Oids<IContact>(items), (Numbers{6, 5, 4, 3, 2}));
}

TEST_P(CollectionContract, SortsDatesAndRefusesWhatCannotBeSorted) {
  AddAppointment(u"b", Day2004(9), Day2004(10));
  AddAppointment(u"a", Day2004(2), Day2004(10));
  const ComPtr<IPOutlookItemCollection> items = Items(platform::kCalendarFolder);
  ASSERT_EQ(items->Sort(Arg(u"[Start]"), kVariantFalse), hr::kOk);
  EXPECT_EQ(Oids<IAppointment>(items), (Numbers{2, 1}));
  for (const char16_t* bad : {u"[Categories]", u"[BodyInk]", u"[Recipients]", u"[Nothing]", u""}) {
    EXPECT_EQ(items->Sort(Arg(bad), kVariantFalse), hr::kInvalidArgument);
  }
  EXPECT_EQ(items->Sort(nullptr, kVariantFalse), hr::kInvalidArgument);
  EXPECT_EQ(Items(platform::kTasksFolder)->Sort(Arg(u"[ReminderTime]"), 0), hr::kInvalidArgument);
  EXPECT_EQ(Oids<IAppointment>(items), (Numbers{2, 1}));
}

TEST_P(CollectionContract, SeriesComeOutOnce) {
  const ComPtr<IPOutlookItemCollection> items = Items(platform::kCalendarFolder);
  EXPECT_EQ(Got(items, &IPOutlookItemCollection::get_IncludeRecurrences), kVariantFalse);
  EXPECT_EQ(items->put_IncludeRecurrences(kVariantFalse), hr::kOk);
  EXPECT_EQ(items->put_IncludeRecurrences(kVariantTrue), hr::kNotImplemented);
  const ComPtr<IAppointment> item = AddAppointment(u"", Day2004(9), Day2004(9));
  ASSERT_EQ(GotPart(item, &IAppointment::GetRecurrencePattern)->put_RecurrenceType(0), hr::kOk);
  ASSERT_EQ(item->Save(), hr::kOk);
  AddAppointment(u"", Day2004(9), Day2004(9));
  EXPECT_EQ(Oids<IAppointment>(items), (Numbers{1, 2}));
  EXPECT_EQ(Found<IAppointment>(items, u"[IsRecurring] = TRUE"), (Numbers{1}));
  EXPECT_EQ(Found<IAppointment>(items, u"[Start] = \"1/9/2004 00:00\""), (Numbers{1, 2}));
}

TEST_P(CollectionContract, NamesFullOfSyntaxAreFoundExactly) {
  const std::u16string names[] = {u"O\"Brien",
                                  u"\"",
                                  u"\"\"",
                                  u"[LastName]=\"x\"",
                                  u"'); DROP TABLE contacts; --",
                                  u"100% _sure\\",
                                  u"a\" AND b",
                                  u"\u00c9t\u00e9 \u0416\u03a3\u4e2d",
                                  std::u16string(1 << 20, u'"'),
                                  std::u16string{char16_t{0xD83D}, char16_t{0xDE00}},
                                  std::u16string{u'x', char16_t{0xD800}}};
  for (const std::u16string& name : names) AddContact(name, u"f");
  const ComPtr<IPOutlookItemCollection> items = Contacts();
  std::int32_t oid = 0;
  for (const std::u16string& name : names) {
    EXPECT_EQ(FoundContacts(items, u"[FirstName]=\"f\" AND [LastName]=\"" + name + u"\""),
              Numbers{++oid});
  }
  EXPECT_EQ(FoundContacts(items, u"[LastName]=\"\u00e9T\u00c9 \u0436\u03c2\u4e2d\""), Numbers{8});
}

class ExactFindContract : public PimContract {
 protected:
  static std::int32_t FindExact(const ComPtr<IPOutlookItemCollection>& items,
                                const std::vector<platform::ExactTerm>& terms) {
    ComPtr<platform::IExactFind> find;
    EXPECT_EQ(items->QueryInterface(platform::IID_IExactFind, find.put_void()), hr::kOk);
    IDispatch* item = nullptr;
    EXPECT_EQ(find->FindExact(terms.data(), static_cast<std::uint32_t>(terms.size()), &item),
              hr::kOk);
    if (item == nullptr) return 0;
    const ComPtr<IContact> contact(static_cast<IContact*>(item));
    return Got(contact, &IContact::get_Oid);
  }
  static platform::ExactTerm Text(const char16_t* property, const char16_t* text) {
    return {property, text, static_cast<std::uint32_t>(std::u16string_view(text).size()), 0};
  }
};
TAMU_OVER_PIM_DEVICES(ExactFindContract);

TEST_P(ExactFindContract, TheLowestIdWithExactlyTheseValuesIsFound) {
  AddContact(u"smith", u"Ada");
  AddContact(u"Smith", u"Ada");
  AddContact(u"Smith", u"Ada");
  AddContact(u"", u"Bob");
  const ComPtr<IPOutlookItemCollection> items = Contacts();
  EXPECT_EQ(FindExact(items, {Text(u"LastName", u"Smith"), Text(u"FirstName", u"Ada")}), 2);
  EXPECT_EQ(FindExact(items, {Text(u"LastName", u"Smith"), Text(u"FirstName", u"ada")}), 0);
  EXPECT_EQ(FindExact(items, {Text(u"lastname", u""), {u"FirstName", u"Bobby", 3, 0}}), 4);
  EXPECT_EQ(FindExact(items, {{u"LastName", nullptr, 0, 0}}), 4);
  EXPECT_EQ(FindExact(items, {{u"Birthday", nullptr, 0, kNoDate}}), 1);
  EXPECT_EQ(FindExact(items, {}), 1);
  ComPtr<IPOutlookItemCollection> capital;
  ASSERT_EQ(items->Restrict(Arg(u"[Oid] > 2"), capital.put()), hr::kOk);
  EXPECT_EQ(FindExact(capital, {Text(u"LastName", u"Smith")}), 3);
}

TEST_P(ExactFindContract, AppointmentsAreFoundByTheExactStart) {
  AddAppointment(u"s", Day2004(5, 9, 1), Day2004(6));
  AddAppointment(u"s", Day2004(5, 9), Day2004(6));
  const ComPtr<IPOutlookItemCollection> items = Items(platform::kCalendarFolder);
  ComPtr<platform::IExactFind> find;
  ASSERT_EQ(items->QueryInterface(platform::IID_IExactFind, find.put_void()), hr::kOk);
  const platform::ExactTerm terms[] = {{u"Start", nullptr, 0, Day2004(5, 9)},
                                       {u"Subject", u"s", 1, 0}};
  IDispatch* item = nullptr;
  ASSERT_EQ(find->FindExact(terms, 2, &item), hr::kOk);
  ASSERT_NE(item, nullptr);
  const ComPtr<IAppointment> appointment(static_cast<IAppointment*>(item));
  EXPECT_EQ(Got(appointment, &IAppointment::get_Oid), 2);
}

TEST_P(ExactFindContract, RefusesWhatItCannotCompare) {
  ComPtr<platform::IExactFind> find;
  const ComPtr<IPOutlookItemCollection> items = Items(platform::kTasksFolder);
  ASSERT_EQ(items->QueryInterface(platform::IID_IExactFind, find.put_void()), hr::kOk);
  IDispatch* item = nullptr;
  for (const char16_t* bad : {u"Nothing", u"Importance", u"Complete", u"BodyInk"}) {
    const platform::ExactTerm term{bad, u"", 0, 0};
    EXPECT_EQ(find->FindExact(&term, 1, &item), hr::kInvalidArgument);
  }
  EXPECT_EQ(find->FindExact(nullptr, 1, &item), hr::kPointer);
}

TEST_P(ExactFindContract, IsTheSameObjectAsItsCollection) {
  const ComPtr<IPOutlookItemCollection> items = Contacts();
  ComPtr<platform::IExactFind> find;
  ASSERT_EQ(items->QueryInterface(platform::IID_IExactFind, find.put_void()), hr::kOk);
  ComPtr<IUnknown> first;
  ComPtr<IUnknown> second;
  ASSERT_EQ(items->QueryInterface(platform::IID_IUnknown, first.put_void()), hr::kOk);
  ASSERT_EQ(find->QueryInterface(platform::IID_IUnknown, second.put_void()), hr::kOk);
  EXPECT_EQ(first.get(), second.get());
}

TEST(Collection, WalkingByIndexLoadsEveryItemOnce) {
  MemoryPimDevice device;
  ComPtr<IPOutlookApp> application;
  ASSERT_EQ(device.CreateApplication(platform::IID_IPOutlookApp, application.put_void()), hr::kOk);
  ASSERT_EQ(application->Logon(0), hr::kOk);
  constexpr std::int32_t kItems = 300;
  for (std::int32_t i = 0; i < kItems; ++i) {
    device::ItemRecord record = device::EmptyItem(device::ItemKind::kContact);
    ASSERT_EQ(device.store().Save(&record), hr::kOk);
  }
  ComPtr<IFolder> folder;
  ASSERT_EQ(application->GetDefaultFolder(platform::kContactsFolder, folder.put()), hr::kOk);
  const ComPtr<IPOutlookItemCollection> items = GotPart(folder, &IFolder::get_Items);
  const std::uint64_t before = device.store().calls();
  for (std::int32_t i = 1; i <= kItems; ++i) {
    IDispatch* item = nullptr;
    ASSERT_EQ(items->Item(i, &item), hr::kOk);
    item->Release();
  }
  EXPECT_LE(device.store().calls() - before, 2U * kItems + 2);
  const std::uint64_t before_removing = device.store().calls();
  for (std::int32_t i = kItems; i >= 1; --i) ASSERT_EQ(items->Remove(i), hr::kOk);
  EXPECT_LE(device.store().calls() - before_removing, 3U * kItems + 2);
}

}  // namespace
}  // namespace tamu::testing
