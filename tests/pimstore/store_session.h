// pimstore/store_session.h - a session over a device, and records and items to use it with.
#ifndef TAMU_TESTS_PIMSTORE_STORE_SESSION_H_
#define TAMU_TESTS_PIMSTORE_STORE_SESSION_H_

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/memory.h"
#include "core/records.h"
#include "device/com_object.h"
#include "pimstore/item_access.h"
#include "pimstore/item_types.h"
#include "pimstore/session.h"
#include "platform/com_ptr.h"
#include "platform/poom.h"
#include "support/call_hook.h"
#include "support/dates.h"
#include "support/log_capture.h"
#include "support/mail_device.h"
#include "support/pim_device.h"
#include "support/scratch_folder.h"
#include "support/time_zone.h"
#include "text/charset.h"
#include "text/property.h"

namespace tamu::testing {

using platform::ComPtr;
using platform::IAppointment;
using platform::IContact;
using platform::ITask;

// A record of one shape that frees itself.
template <typename Shape, ObjectKind kind, std::uint8_t component = 0>
class TestRecord {
 public:
  TestRecord() {
    if constexpr (component != 0) shape().component = component;
  }
  ~TestRecord() { RECORD_Free(kind, &record_); }
  TestRecord(const TestRecord&) = delete;
  TestRecord& operator=(const TestRecord&) = delete;

  // Appends a property as a reader does.
  TestRecord& With(Ref<Property> Shape::*field, const char* value, const char* params = "") {
    PROP_SetFromText(value, params, kAnyComponents, PROP_Append(&(shape().*field)));
    return *this;
  }
  // Appends a property that has no value at all.
  TestRecord& WithNothing(Ref<Property> Shape::*field) {
    PROP_Append(&(shape().*field));
    return *this;
  }

  [[nodiscard]] ObjectRecord* get() { return &record_; }
  [[nodiscard]] Shape& shape() { return *reinterpret_cast<Shape*>(&record_); }
  Shape* operator->() { return &shape(); }

 private:
  ObjectRecord record_{};
};
using Card = TestRecord<ContactShape, KIND_CONTACT>;
using Event = TestRecord<EventShape, KIND_CALENDAR, COMPONENT_EVENT>;
using ToDo = TestRecord<ToDoShape, KIND_CALENDAR, COMPONENT_TODO>;
using Note = TestRecord<NoteShape, KIND_NOTE>;

// A property as "params:value", components joined by ";", a missing one "-"; "none" without one.
inline std::string Line(const Property* property) {
  if (property == nullptr) return "none";
  std::string line;
  for (const StringItem* item = property->params; item != nullptr; item = item->next) {
    if (!line.empty()) line += ';';
    line += item->text.get();
  }
  line += ':';
  for (const StringItem* item = property->values; item != nullptr; item = item->next) {
    if (item != property->values.get()) line += ';';
    line += item->text != nullptr ? item->text.get() : "-";
  }
  return line;
}
inline std::vector<std::string> Lines(const Property* property) {
  std::vector<std::string> lines;
  for (; property != nullptr; property = property->next) lines.push_back(Line(property));
  return lines;
}

// The device's calls while it lives, and failures of them.
class CallWatch {
 public:
  CallWatch() = default;
  // Lets the n-th call (from 1) fail.
  explicit CallWatch(std::uint64_t fail_at) { hook_.AnswerNth(fail_at, platform::hr::kFail); }
  // Refuses every call of a method.
  explicit CallWatch(const std::string& refused) {
    hook_.Answer(refused, platform::hr::kNotImplemented);
  }

  [[nodiscard]] const std::vector<std::string>& calls() const { return hook_.calls(); }
  // Those of methods whose name contains one of the texts, without the interface's name.
  [[nodiscard]] std::vector<std::string> Only(const std::vector<std::string>& parts) const {
    std::vector<std::string> result;
    for (const std::string& call : calls()) {
      for (const std::string& part : parts) {
        if (call.find(part) == std::string::npos) continue;
        result.push_back(call.substr(call.find("::") + 2));
        break;
      }
    }
    return result;
  }

 private:
  CallHookScope hook_;
};

// The device that the tests run over: one in memory, or the embedded one in the test's own folder.
#ifdef TAMU_TEST_EMBEDDED_DEVICE
class TestDevice {
 public:
  static platform::HRESULT CreateApplication(const platform::GUID& iid, void** application) {
    return platform::CoCreateInstance.system_function()(
        platform::CLSID_Application, nullptr, platform::kInProcessServer, iid, application);
  }
};
#else
class TestDevice {
 public:
  platform::HRESULT CreateApplication(const platform::GUID& iid, void** application) {
    return pim_.device().CreateApplication(iid, application);
  }

 private:
  ScopedPimDevice pim_;
  ScopedMailDevice mail_;
};
#endif

// An empty device, with a folder, a zone and a locale of its own. Everything that was
// acquired has to be released in the end.
class DeviceTest : public ::testing::Test {
 protected:
  DeviceTest() { CHARSET_Reset(); }
  ~DeviceTest() override {
    EXPECT_EQ(POL_Close(), TAMU_OK);
    CHARSET_Reset();
    EXPECT_EQ(device::LiveObjects(), objects_);
    EXPECT_EQ(platform::SysLiveStrings(), strings_);
    EXPECT_EQ(MEM_LiveBlocks(), blocks_);
  }

  [[nodiscard]] const ScratchFolder& home() const { return home_; }
  [[nodiscard]] TestDevice& test_device() { return device_; }

 private:
  const std::int64_t objects_ = device::LiveObjects();
  const std::int64_t strings_ = platform::SysLiveStrings();
  const std::size_t blocks_ = MEM_LiveBlocks();
  ScratchFolder home_;
  ScopedEnvironment home_variable_{"TAMU_HOME", home_.path().string()};
  ScopedEnvironment locale_{"LC_ALL", "C"};
  ScopedTimeZone zone_{kPlusOneZone};
  TestDevice device_;
};

// The same with a session.
class SessionTest : public DeviceTest {
 protected:
  SessionTest() { EXPECT_EQ(POL_Open(), TAMU_OK); }

  // A new item that is not saved.
  template <typename Item>
  static ComPtr<Item> New() {
    ComPtr<platform::IDispatch> item;
    EXPECT_EQ(POL_Application()->CreateItem(kItemType<Item>, item.put()), platform::hr::kOk);
    return ItemAs<Item>(item.get());
  }
  // The stored item with the id; null when there is none.
  template <typename Item>
  static ComPtr<Item> Stored(const std::string& id) {
    unsigned int oid = 0;
    EXPECT_EQ(std::sscanf(id.c_str(), "%x", &oid), 1);
    ComPtr<platform::IDispatch> item;
    static_cast<void>(
        POL_Application()->GetItemFromOid(static_cast<std::int32_t>(oid), item.put()));
    return ItemAs<Item>(item.get());
  }
  // Adds a record and gives its id.
  static std::string Add(ObjectKind kind, ObjectRecord* record) {
    char id[16] = "before";
    EXPECT_EQ(POL_AddObject(kind, record, id), TAMU_OK);
    return id;
  }
  template <typename Item, typename Value>
  static void Put(const ComPtr<Item>& item, ItemPutter<Item, Value> putter,
                  std::type_identity_t<Value> value) {
    EXPECT_EQ((item.get()->*putter)(value), platform::hr::kOk);
  }
  template <typename Item>
  static void PutText(const ComPtr<Item>& item, ItemPutter<Item, platform::BSTR> putter,
                      const char16_t* text) {
    const platform::BStr value(platform::SysAllocString(text));
    EXPECT_EQ((item.get()->*putter)(value.get()), platform::hr::kOk);
  }
  template <typename Item>
  static std::u16string Text(const ComPtr<Item>& item, ItemGetter<Item, platform::BSTR> getter) {
    return std::u16string(GetText(item.get(), getter).view());
  }
  template <typename Item, typename Value>
  static Value Get(const ComPtr<Item>& item, ItemGetter<Item, Value> getter) {
    Value value{};
    EXPECT_EQ((item.get()->*getter)(&value), platform::hr::kOk);
    return value;
  }
};

}  // namespace tamu::testing

#endif  // TAMU_TESTS_PIMSTORE_STORE_SESSION_H_
