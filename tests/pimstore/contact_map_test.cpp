#include "pimstore/contact_map.h"

#include <gtest/gtest.h>

#include "pimstore/contact_fields.h"
#include "pimstore/store_session.h"

namespace tamu {
namespace {

using platform::ComPtr;
using platform::IContact;
using testing::CallWatch;
using testing::Card;
using testing::Date;
using testing::Line;
using testing::Lines;
using C = ContactShape;
using Strings = std::vector<std::string>;

class ContactTest : public testing::SessionTest {
 protected:
  static ComPtr<IContact> Filled(Card& card) {
    ComPtr<IContact> item = New<IContact>();
    ContactToStore(item.get(), card.shape());
    return item;
  }
  static std::u16string Telephone(const ComPtr<IContact>& item, TelephonePlace place) {
    return Text(item, kTelephoneFields[place].field.get);
  }
  // The fields of an address, joined by "|".
  static std::u16string Address(const ComPtr<IContact>& item, AddressPlace place) {
    std::u16string all;
    for (const ContactText& field : kAddresses[place].fields) {
      if (&field != &kAddresses[place].fields[0]) all += u'|';
      all += Text(item, field.get);
    }
    return all;
  }
  static std::u16string Emails(const ComPtr<IContact>& item) {
    std::u16string all;
    for (const ContactText& field : kEmailFields) all += Text(item, field.get) + u'|';
    return all;
  }
};
using ContactToStoreTest = ContactTest;
using ContactFromStoreTest = ContactTest;

TEST_F(ContactToStoreTest, TheFieldsArePutInOneFixedOrder) {
  Card card;
  card.With(&C::prop_category, "Friends")
      .With(&C::prop_assistant, "Ann")
      .With(&C::prop_children, "Tim")
      .With(&C::prop_anniversary, "20000102")
      .With(&C::prop_spouse, "Pat")
      .With(&C::prop_note, "Text")
      .With(&C::prop_email, "a@b", "INTERNET")
      .With(&C::prop_url, "http://a")
      .With(&C::prop_tel, "1", "CELL")
      .With(&C::prop_org, "Firm;Unit")
      .With(&C::prop_title, "Boss")
      .With(&C::prop_adr, ";;Street;City;State;1;Land", "HOME")
      .With(&C::prop_bday, "19700102")
      .With(&C::prop_nickname, "Nick")
      .With(&C::prop_role, "Role")
      .With(&C::prop_n, "Last;First")
      .With(&C::prop_fn, "First Last");
  const ComPtr<IContact> item = New<IContact>();
  const CallWatch watch;
  ContactToStore(item.get(), card.shape());
  EXPECT_EQ(watch.Only({"put_"}), (Strings{"put_FileAs",
                                           "put_LastName",
                                           "put_FirstName",
                                           "put_MiddleName",
                                           "put_Title",
                                           "put_Suffix",
                                           "put_Birthday",
                                           "put_HomeAddressStreet",
                                           "put_HomeAddressCity",
                                           "put_HomeAddressState",
                                           "put_HomeAddressPostalCode",
                                           "put_HomeAddressCountry",
                                           "put_JobTitle",
                                           "put_CompanyName",
                                           "put_Department",
                                           "put_MobileTelephoneNumber",
                                           "put_WebPage",
                                           "put_Email1Address",
                                           "put_Body",
                                           "put_Spouse",
                                           "put_Anniversary",
                                           "put_Children",
                                           "put_AssistantName",
                                           "put_Categories"}));
  EXPECT_EQ(watch.calls().size(), 24U);
}

TEST_F(ContactToStoreTest, AnEmptyRecordClearsTheNameAndNothingElse) {
  Card full;
  full.With(&C::prop_fn, "A")
      .With(&C::prop_n, "L;F;M;T;S")
      .With(&C::prop_title, "Boss")
      .With(&C::prop_tel, "1")
      .With(&C::prop_bday, "19700102");
  const ComPtr<IContact> item = Filled(full);
  Card empty;
  const CallWatch watch;
  ContactToStore(item.get(), empty.shape());
  EXPECT_EQ(watch.calls().size(), 6U);
  EXPECT_EQ(Text(item, &IContact::get_FileAs), u"");
  for (const ContactText& field : kNameFields) EXPECT_EQ(Text(item, field.get), u"");
  EXPECT_EQ(Text(item, &IContact::get_JobTitle), u"Boss");
  EXPECT_EQ(Telephone(item, kHomeTelephone), u"1");
  EXPECT_EQ(Get(item, &IContact::get_Birthday), Date(1970, 1, 2).days);
}

TEST_F(ContactToStoreTest, AnEmptyBirthdayStoresNoDate) {
  Card card;
  card.With(&C::prop_bday, "19700102");
  const ComPtr<IContact> item = Filled(card);
  Card empty;
  empty.With(&C::prop_bday, "");
  ContactToStore(item.get(), empty.shape());
  EXPECT_EQ(Get(item, &IContact::get_Birthday), platform::kNoDate);
}

TEST_F(ContactToStoreTest, APropertyWithoutTextClearsItsField) {
  Card card;
  card.With(&C::prop_note, "Text").With(&C::prop_org, "Firm;Unit");
  const ComPtr<IContact> item = Filled(card);
  Card empty;
  empty.With(&C::prop_note, "").With(&C::prop_org, "Other");
  ContactToStore(item.get(), empty.shape());
  EXPECT_EQ(Text(item, &IContact::get_Body), u"");
  EXPECT_EQ(Text(item, &IContact::get_CompanyName), u"Other");
  EXPECT_EQ(Text(item, &IContact::get_Department), u"");
}

TEST_F(ContactToStoreTest, ANumberWithoutTypesIsTheHomeNumber) {
  Card card;
  card.With(&C::prop_tel, "1");
  EXPECT_EQ(Telephone(Filled(card), kHomeTelephone), u"1");
}

TEST_F(ContactToStoreTest, VoiceOrFaxAloneCountsAsHome) {
  Card card;
  card.With(&C::prop_tel, "1", "VOICE").With(&C::prop_tel, "2", "FAX");
  const ComPtr<IContact> item = Filled(card);
  EXPECT_EQ(Telephone(item, kHomeTelephone), u"1");
  EXPECT_EQ(Telephone(item, kHomeFax), u"2");
}

TEST_F(ContactToStoreTest, WorkNumbersGoToTheBusinessFields) {
  Card card;
  card.With(&C::prop_tel, "1", "WORK;VOICE")
      .With(&C::prop_tel, "2", "TYPE=WORK")
      .With(&C::prop_tel, "3", "WORK;FAX")
      .With(&C::prop_tel, "4", "WORK")
      .With(&C::prop_tel, "5", "FAX;WORK");
  const ComPtr<IContact> item = Filled(card);
  EXPECT_EQ(Telephone(item, kBusinessTelephone), u"1");
  EXPECT_EQ(Telephone(item, kBusiness2Telephone), u"2");
  EXPECT_EQ(Telephone(item, kBusinessFax), u"3");
  EXPECT_EQ(Telephone(item, kHomeTelephone), u"");
}

TEST_F(ContactToStoreTest, ANumberForHomeAndWorkCountsAsHome) {
  Card card;
  card.With(&C::prop_tel, "1", "WORK;HOME").With(&C::prop_tel, "2", "WORK;HOME;FAX");
  const ComPtr<IContact> item = Filled(card);
  EXPECT_EQ(Telephone(item, kHomeTelephone), u"1");
  EXPECT_EQ(Telephone(item, kHomeFax), u"2");
  EXPECT_EQ(Telephone(item, kBusinessTelephone), u"");
}

TEST_F(ContactToStoreTest, TheThirdHomeNumberIsDropped) {
  Card card;
  card.With(&C::prop_tel, "1", "HOME")
      .With(&C::prop_tel, "2", "HOME")
      .With(&C::prop_tel, "3", "HOME");
  const ComPtr<IContact> item = Filled(card);
  EXPECT_EQ(Telephone(item, kHomeTelephone), u"1");
  EXPECT_EQ(Telephone(item, kHome2Telephone), u"2");
  for (std::size_t i = kBusinessTelephone; i < kTelephones; ++i) {
    EXPECT_EQ(Telephone(item, static_cast<TelephonePlace>(i)), u"") << i;
  }
}

TEST_F(ContactToStoreTest, ASpecialNumberFillsEachOfItsFieldsAndNoOther) {
  Card card;
  card.With(&C::prop_tel, "1", "CELL;CAR;HOME")
      .With(&C::prop_tel, "2", "TYPE=X-ASSISTANT;X-RADIO;WORK")
      .With(&C::prop_tel, "3", "PAGER")
      .With(&C::prop_tel, "4", "CELL");
  const ComPtr<IContact> item = Filled(card);
  EXPECT_EQ(Telephone(item, kMobileTelephone), u"1");
  EXPECT_EQ(Telephone(item, kCarTelephone), u"1");
  EXPECT_EQ(Telephone(item, kAssistantTelephone), u"2");
  EXPECT_EQ(Telephone(item, kRadioTelephone), u"2");
  EXPECT_EQ(Telephone(item, kPager), u"3");
  EXPECT_EQ(Telephone(item, kHomeTelephone), u"");
  EXPECT_EQ(Telephone(item, kBusinessTelephone), u"");
}

TEST_F(ContactToStoreTest, ANumberOfAnotherTypeIsDropped) {
  Card card;
  card.With(&C::prop_tel, "1", "MSG").With(&C::prop_tel, "2", "PREF");
  const ComPtr<IContact> item = New<IContact>();
  const CallWatch watch;
  ContactToStore(item.get(), card.shape());
  EXPECT_EQ(watch.calls().size(), 6U);
}

TEST_F(ContactToStoreTest, AnEntryWithoutAValueDoesNotCount) {
  Card card;
  card.WithNothing(&C::prop_tel)
      .With(&C::prop_tel, "1")
      .WithNothing(&C::prop_adr)
      .With(&C::prop_adr, ";;S")
      .WithNothing(&C::prop_url)
      .With(&C::prop_url, "u");
  const ComPtr<IContact> item = Filled(card);
  EXPECT_EQ(Telephone(item, kHomeTelephone), u"1");
  EXPECT_EQ(Address(item, kOtherAddress), u"S||||");
  EXPECT_EQ(Text(item, &IContact::get_WebPage), u"u");
}

TEST_F(ContactToStoreTest, AnEntryWithAnEmptyValueCounts) {
  Card card;
  card.With(&C::prop_tel, "").With(&C::prop_tel, "1");
  const ComPtr<IContact> item = Filled(card);
  EXPECT_EQ(Telephone(item, kHomeTelephone), u"");
  EXPECT_EQ(Telephone(item, kHome2Telephone), u"1");
}

TEST_F(ContactToStoreTest, TheFirstUrlWithATextIsTheWebPage) {
  Card card;
  card.With(&C::prop_url, "").With(&C::prop_url, "http://a").With(&C::prop_url, "http://b");
  EXPECT_EQ(Text(Filled(card), &IContact::get_WebPage), u"http://a");
}

TEST_F(ContactToStoreTest, OnlyInternetAddressesCountKeptOnPurpose) {
  Card card;
  card.With(&C::prop_email, "x")
      .With(&C::prop_email, "y", "X400;PREF")
      .With(&C::prop_email, "a", "INTERNET");
  EXPECT_EQ(Emails(Filled(card)), u"a|||");
}

TEST_F(ContactToStoreTest, ThePreferredAddressComesFirst) {
  Card card;
  card.With(&C::prop_email, "a", "INTERNET").With(&C::prop_email, "b", "INTERNET;PREF");
  const ComPtr<IContact> item = Filled(card);
  EXPECT_EQ(Emails(item), u"b|a||");
  Card back;
  ContactFromStore(item.get(), &back.shape());
  EXPECT_EQ(Lines(back->prop_email), (Strings{"INTERNET;PREF:b", "INTERNET:a"}));
}

TEST_F(ContactToStoreTest, OfSeveralPreferredAddressesTheLastOneIsTakenKeptOnPurpose) {
  Card card;
  card.With(&C::prop_email, "a", "INTERNET;PREF")
      .With(&C::prop_email, "b", "INTERNET")
      .With(&C::prop_email, "c", "INTERNET;PREF")
      .With(&C::prop_email, "d", "INTERNET");
  EXPECT_EQ(Emails(Filled(card)), u"c|a|b|");
}

TEST_F(ContactToStoreTest, StreetsAreJoinedByLineBreaks) {
  Card card;
  card.With(&C::prop_adr, "P;E;S;City;State;1;Land", "HOME");
  EXPECT_EQ(Address(Filled(card), kHomeAddress), u"P\r\nE\r\nS|City|State|1|Land");
}

TEST_F(ContactToStoreTest, AStreetBeginsWithItsFirstPartThatHasText) {
  Card card;
  card.With(&C::prop_adr, ";E;S", "WORK").With(&C::prop_adr, "P;;S", "HOME");
  const ComPtr<IContact> item = Filled(card);
  EXPECT_EQ(Address(item, kBusinessAddress), u"E\r\nS||||");
  EXPECT_EQ(Address(item, kHomeAddress), u"P\r\nS||||");
}

TEST_F(ContactToStoreTest, AnAddressThatIsThereIsPutWhole) {
  Card card;
  card.With(&C::prop_adr, "P;E;S;City;State;1;Land", "HOME");
  const ComPtr<IContact> item = Filled(card);
  Card other;
  other.With(&C::prop_adr, ";;;Town", "HOME");
  ContactToStore(item.get(), other.shape());
  EXPECT_EQ(Address(item, kHomeAddress), u"|Town|||");
}

TEST_F(ContactToStoreTest, LaterAddressesGoToTheOtherOneAndThenNowhere) {
  Card card;
  card.With(&C::prop_adr, ";;a", "HOME")
      .With(&C::prop_adr, ";;b", "WORK")
      .With(&C::prop_adr, ";;c", "HOME")
      .With(&C::prop_adr, ";;d", "WORK")
      .With(&C::prop_adr, ";;e");
  const ComPtr<IContact> item = Filled(card);
  EXPECT_EQ(Address(item, kHomeAddress), u"a||||");
  EXPECT_EQ(Address(item, kBusinessAddress), u"b||||");
  EXPECT_EQ(Address(item, kOtherAddress), u"c||||");
}

TEST_F(ContactToStoreTest, ASecondHomeAddressThatIsForWorkTooGoesThere) {
  Card card;
  card.With(&C::prop_adr, ";;a", "HOME;WORK")
      .With(&C::prop_adr, ";;b", "HOME;WORK")
      .With(&C::prop_adr, ";;c", "HOME;WORK");
  const ComPtr<IContact> item = Filled(card);
  EXPECT_EQ(Address(item, kHomeAddress), u"a||||");
  EXPECT_EQ(Address(item, kBusinessAddress), u"b||||");
  EXPECT_EQ(Address(item, kOtherAddress), u"c||||");
}

TEST_F(ContactToStoreTest, ValuesAreDecoded) {
  Card card;
  card.With(&C::prop_n, "M=C3=BCller;Anna", "CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE")
      .With(&C::prop_note, "a\\;b");
  const ComPtr<IContact> item = Filled(card);
  EXPECT_EQ(Text(item, &IContact::get_LastName), u"Müller");
  EXPECT_EQ(Text(item, &IContact::get_Body), u"a;b");
}

TEST_F(ContactFromStoreTest, AnEmptyContactHasAnEmptyNameAndCategoryKeptOnPurpose) {
  const ComPtr<IContact> item = New<IContact>();
  Card card;
  ContactFromStore(item.get(), &card.shape());
  EXPECT_EQ(card->object_type, 1U);
  EXPECT_STREQ(card->luid, "00000000");
  EXPECT_STREQ(card->version, "2.1");
  EXPECT_EQ(Line(card->prop_n), ":");
  EXPECT_EQ(card->prop_n->values, nullptr);
  EXPECT_EQ(Lines(card->prop_category), (Strings{":"}));
  for (const auto field :
       {&C::prop_fn, &C::prop_nickname, &C::prop_adr, &C::prop_org, &C::prop_title, &C::prop_role,
        &C::prop_tel, &C::prop_url, &C::prop_email, &C::prop_note, &C::prop_bday, &C::prop_spouse,
        &C::prop_anniversary, &C::prop_children, &C::prop_assistant}) {
    EXPECT_EQ(card.shape().*field, nullptr);
  }
}

TEST_F(ContactFromStoreTest, TheIdIsEightHexadecimalDigits) {
  Card card;
  const std::string id = Add(KIND_CONTACT, card.get());
  EXPECT_EQ(id.size(), 8U);
  Card back;
  ContactFromStore(Stored<IContact>(id).get(), &back.shape());
  EXPECT_EQ(back->luid, id);
}

TEST_F(ContactFromStoreTest, ABirthdayOf4501IsNotWritten) {
  const ComPtr<IContact> item = New<IContact>();
  Put(item, &IContact::put_Birthday, Date(4501, 1, 1).days);
  Put(item, &IContact::put_Anniversary, Date(2000, 5, 6, 7).days);
  Card card;
  ContactFromStore(item.get(), &card.shape());
  EXPECT_EQ(card->prop_bday, nullptr);
  EXPECT_EQ(Line(card->prop_anniversary), ":20000506");
}

TEST_F(ContactFromStoreTest, EveryTelephoneHasItsTypes) {
  const ComPtr<IContact> item = New<IContact>();
  for (std::size_t i = 0; i < kTelephones; ++i) {
    const std::u16string number(1, static_cast<char16_t>(u'a' + i));
    PutText(item, kTelephoneFields[i].field.put, number.c_str());
  }
  Card card;
  ContactFromStore(item.get(), &card.shape());
  EXPECT_EQ(Lines(card->prop_tel),
            (Strings{"HOME;VOICE:a", "HOME;VOICE:b", "WORK;VOICE:c", "WORK;VOICE:d", "HOME;FAX:e",
                     "WORK;FAX:f", "CELL:g", "PAGER:h", "CAR:i", "TYPE=X-ASSISTANT:j",
                     "TYPE=X-RADIO:k"}));
  EXPECT_EQ(card->prop_tel->params->next, nullptr) << "HOME;VOICE is one parameter";
}

TEST_F(ContactFromStoreTest, TelephonesComeBackToTheirFields) {
  const ComPtr<IContact> item = New<IContact>();
  for (std::size_t i = 0; i < kTelephones; ++i) {
    const std::u16string number(1, static_cast<char16_t>(u'a' + i));
    PutText(item, kTelephoneFields[i].field.put, number.c_str());
  }
  Card card;
  ContactFromStore(item.get(), &card.shape());
  const ComPtr<IContact> back = Filled(card);
  for (std::size_t i = 0; i < kTelephones; ++i) {
    EXPECT_EQ(Telephone(back, static_cast<TelephonePlace>(i)),
              Telephone(item, static_cast<TelephonePlace>(i)));
  }
}

TEST_F(ContactFromStoreTest, AddressesHaveTheirTypeAndBeginWithTheStreet) {
  const ComPtr<IContact> item = New<IContact>();
  PutText(item, &IContact::put_OtherAddressCountry, u"Land");
  PutText(item, &IContact::put_BusinessAddressState, u"State");
  PutText(item, &IContact::put_HomeAddressStreet, u"Weg 1\r\nHaus");
  Card card;
  ContactFromStore(item.get(), &card.shape());
  EXPECT_EQ(Lines(card->prop_adr), (Strings{"HOME;ENCODING=QUOTED-PRINTABLE:-;-;Weg 1=0D=0AHaus",
                                            "WORK:-;-;-;-;State", ":-;-;-;-;-;-;Land"}));
}

TEST_F(ContactFromStoreTest, TheTypeStandsBeforeCharacterSetAndEncoding) {
  const ComPtr<IContact> item = New<IContact>();
  PutText(item, &IContact::put_HomeAddressStreet, u"Жук");
  Card card;
  ContactFromStore(item.get(), &card.shape());
  EXPECT_EQ(Line(card->prop_adr),
            "HOME;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:-;-;=D0=96=D1=83=D0=BA");
}

TEST_F(ContactFromStoreTest, LineBreaksOfFieldsWithoutEncodingGoOutRaw) {
  const ComPtr<IContact> item = New<IContact>();
  PutText(item, &IContact::put_Spouse, u"a\r\nb");
  PutText(item, &IContact::put_Body, u"a\r\nb");
  Card card;
  ContactFromStore(item.get(), &card.shape());
  EXPECT_EQ(Line(card->prop_spouse), ":a\r\nb");
  EXPECT_EQ(Line(card->prop_note), "ENCODING=QUOTED-PRINTABLE:a=0D=0Ab");
}

TEST_F(ContactFromStoreTest, EverythingComesBack) {
  Card card;
  card.With(&C::prop_n, "L;F;M;T;S")
      .With(&C::prop_fn, "F L")
      .With(&C::prop_bday, "19700102")
      .With(&C::prop_title, "Boss")
      .With(&C::prop_org, ";Unit")
      .With(&C::prop_url, "http://a")
      .With(&C::prop_note, "Text")
      .With(&C::prop_spouse, "Pat")
      .With(&C::prop_anniversary, "2000-03-04")
      .With(&C::prop_children, "Tim")
      .With(&C::prop_assistant, "Ann")
      .With(&C::prop_category, "Friends");
  Card back;
  ContactFromStore(Filled(card).get(), &back.shape());
  EXPECT_EQ(Line(back->prop_n), ":L;F;M;T;S");
  EXPECT_EQ(Line(back->prop_fn), ":F L");
  EXPECT_EQ(Line(back->prop_bday), ":19700102");
  EXPECT_EQ(Line(back->prop_title), ":Boss");
  EXPECT_EQ(Line(back->prop_org), ":-;Unit");
  EXPECT_EQ(Line(back->prop_url), ":http://a");
  EXPECT_EQ(Line(back->prop_note), ":Text");
  EXPECT_EQ(Line(back->prop_spouse), ":Pat");
  EXPECT_EQ(Line(back->prop_anniversary), ":20000304");
  EXPECT_EQ(Line(back->prop_children), ":Tim");
  EXPECT_EQ(Line(back->prop_assistant), ":Ann");
  EXPECT_EQ(Line(back->prop_category), ":Friends");
}

}  // namespace
}  // namespace tamu
