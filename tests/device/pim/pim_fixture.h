// device/pim/pim_fixture.h - the contract tests' fixture: an application that is logged on over each
// kind of device, and short ways to do what every test needs. Nothing may be left when a test ends.
#ifndef TAMU_TESTS_DEVICE_PIM_PIM_FIXTURE_H_
#define TAMU_TESTS_DEVICE_PIM_PIM_FIXTURE_H_

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "device/com_object.h"
#include "platform/bstr.h"
#include "platform/com_ptr.h"
#include "platform/poom.h"
#include "support/pim_device.h"
#include "support/time_zone.h"

namespace tamu::testing {

using platform::BSTR;
using platform::BStr;
using platform::ComPtr;
using platform::DATE;
using platform::HRESULT;
using platform::IAppointment;
using platform::IContact;
using platform::IDispatch;
using platform::IException;
using platform::IExceptions;
using platform::IFolder;
using platform::IPOutlookApp;
using platform::IPOutlookItemCollection;
using platform::IRecipient;
using platform::IRecipients;
using platform::IRecurrencePattern;
using platform::ITask;
using platform::IUnknown;
using platform::kNoDate;
using platform::kVariantFalse;
using platform::kVariantTrue;
using platform::VARIANT_BOOL;
namespace hr = platform::hr;

// A text as an argument: terminated, without a count.
inline BSTR Arg(const char16_t* text) { return const_cast<BSTR>(text); }
inline BSTR Arg(const std::u16string& text) { return Arg(text.c_str()); }

// The value of a getter that has to succeed.
template <typename Object, typename Value>
[[nodiscard]] Value Got(const ComPtr<Object>& object, HRESULT (Object::*get)(Value*)) {
  Value value{};
  EXPECT_EQ((object.get()->*get)(&value), hr::kOk);
  return value;
}
template <typename Object>
[[nodiscard]] std::u16string GotText(const ComPtr<Object>& object, HRESULT (Object::*get)(BSTR*)) {
  BStr text;
  EXPECT_EQ((object.get()->*get)(text.put()), hr::kOk);
  EXPECT_NE(text.get(), nullptr);
  return std::u16string(text.view());
}
template <typename Object, typename Part>
[[nodiscard]] ComPtr<Part> GotPart(const ComPtr<Object>& object, HRESULT (Object::*get)(Part**)) {
  ComPtr<Part> part;
  EXPECT_EQ((object.get()->*get)(part.put()), hr::kOk);
  EXPECT_TRUE(part);
  return part;
}

// The date of a day in January 2004 (1 is 1 January, 366 is the last of the year), and a time of day.
constexpr double kFirstOfJanuary2004 = 37987;
constexpr DATE Day2004(int day, int hour = 0, int minute = 0) {
  return kFirstOfJanuary2004 - 1 + day + (hour * 60 + minute) / 1440.0;
}

inline std::string NameOfKind(const ::testing::TestParamInfo<PimDeviceKind>& kind) {
  return kind.param.name;
}

class PimContract : public ::testing::TestWithParam<PimDeviceKind> {
 protected:
  void SetUp() override {
    objects_ = device::LiveObjects();
    strings_ = platform::SysLiveStrings();
    device_ = GetParam().make();
    LogonAgain();
  }

  void TearDown() override {
    application_.reset();
    device_.reset();
    EXPECT_EQ(device::LiveObjects(), objects_);
    EXPECT_EQ(platform::SysLiveStrings(), strings_);
  }

  [[nodiscard]] ComPtr<IPOutlookApp> NewApplication() {
    ComPtr<IPOutlookApp> application;
    EXPECT_EQ(device_->CreateApplication(platform::IID_IPOutlookApp, application.put_void()),
              hr::kOk);
    return application;
  }

  // Goes on with a new application.
  void LogonAgain() {
    application_ = NewApplication();
    ASSERT_EQ(application_->Logon(0), hr::kOk);
  }

  [[nodiscard]] ComPtr<IContact> NewContact() { return Create<IContact>(platform::kContactItem); }
  [[nodiscard]] ComPtr<ITask> NewTask() { return Create<ITask>(platform::kTaskItem); }
  [[nodiscard]] ComPtr<IAppointment> NewAppointment() {
    return Create<IAppointment>(platform::kAppointmentItem);
  }
  // Saved ones.
  ComPtr<IContact> AddContact(std::u16string_view last_name, std::u16string_view first_name = u"") {
    ComPtr<IContact> contact = NewContact();
    EXPECT_EQ(contact->put_LastName(Arg(std::u16string(last_name))), hr::kOk);
    EXPECT_EQ(contact->put_FirstName(Arg(std::u16string(first_name))), hr::kOk);
    EXPECT_EQ(contact->Save(), hr::kOk);
    return contact;
  }
  ComPtr<IAppointment> AddAppointment(std::u16string_view subject, DATE start, DATE end) {
    ComPtr<IAppointment> item = NewAppointment();
    EXPECT_EQ(item->put_Subject(Arg(std::u16string(subject))), hr::kOk);
    EXPECT_EQ(item->put_Start(start), hr::kOk);
    EXPECT_EQ(item->put_End(end), hr::kOk);
    EXPECT_EQ(item->Save(), hr::kOk);
    return item;
  }

  // The item of an id, as what it is known to be.
  template <typename Interface>
  [[nodiscard]] ComPtr<Interface> Open(std::int32_t oid) {
    IDispatch* item = nullptr;
    EXPECT_EQ(application_->GetItemFromOid(oid, &item), hr::kOk);
    return ComPtr<Interface>(static_cast<Interface*>(item));
  }
  // The stored state of an item in hand.
  template <typename Interface>
  [[nodiscard]] ComPtr<Interface> Reopen(const ComPtr<Interface>& item) {
    return Open<Interface>(Got(item, &Interface::get_Oid));
  }

  [[nodiscard]] ComPtr<IPOutlookItemCollection> Items(std::int32_t folder) {
    ComPtr<IFolder> found;
    EXPECT_EQ(application_->GetDefaultFolder(folder, found.put()), hr::kOk);
    return GotPart(found, &IFolder::get_Items);
  }
  [[nodiscard]] ComPtr<IPOutlookItemCollection> Contacts() {
    return Items(platform::kContactsFolder);
  }

  // The oids of a collection by index.
  template <typename Interface>
  [[nodiscard]] static std::vector<std::int32_t> Oids(
      const ComPtr<IPOutlookItemCollection>& items) {
    std::vector<std::int32_t> oids;
    const std::int32_t count = Got(items, &IPOutlookItemCollection::get_Count);
    for (std::int32_t i = 1; i <= count; ++i) {
      IDispatch* item = nullptr;
      EXPECT_EQ(items->Item(i, &item), hr::kOk);
      if (item == nullptr) continue;
      const ComPtr<Interface> typed(static_cast<Interface*>(item));
      oids.push_back(Got(typed, &Interface::get_Oid));
    }
    return oids;
  }
  // The oids that a search finds.
  template <typename Interface>
  [[nodiscard]] static std::vector<std::int32_t> Found(const ComPtr<IPOutlookItemCollection>& items,
                                                       const std::u16string& restriction) {
    std::vector<std::int32_t> oids;
    IDispatch* item = nullptr;
    EXPECT_EQ(items->Find(Arg(restriction), &item), hr::kOk);
    while (item != nullptr) {
      const ComPtr<Interface> typed(static_cast<Interface*>(item));
      oids.push_back(Got(typed, &Interface::get_Oid));
      EXPECT_EQ(items->FindNext(&item), hr::kOk);
    }
    return oids;
  }

  std::unique_ptr<PimDevice> device_;
  ComPtr<IPOutlookApp> application_;

 private:
  template <typename Interface>
  [[nodiscard]] ComPtr<Interface> Create(std::int32_t type) {
    IDispatch* item = nullptr;
    EXPECT_EQ(application_->CreateItem(type, &item), hr::kOk);
    return ComPtr<Interface>(static_cast<Interface*>(item));
  }

  std::int64_t objects_ = 0;
  std::int64_t strings_ = 0;
};

}  // namespace tamu::testing

// Runs the tests of a suite over every kind of device.
#define TAMU_OVER_PIM_DEVICES(suite)                                                               \
  INSTANTIATE_TEST_SUITE_P(Devices, suite, ::testing::ValuesIn(::tamu::testing::PimDeviceKinds()), \
                           ::tamu::testing::NameOfKind)

#endif  // TAMU_TESTS_DEVICE_PIM_PIM_FIXTURE_H_
