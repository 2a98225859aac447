// The device through its platform interfaces, as the adapters use it: one save, finding by name, the
// exact find and a walk by index at growing sizes, and the same of the mail.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <array>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "device/batch.h"
#include "platform/cemapi.h"
#include "platform/com_ptr.h"
#include "platform/poom.h"

namespace tamu {
namespace {

using platform::ComPtr;
using platform::IContact;
using platform::IDispatch;
using platform::IMAPIFolder;
using platform::IPOutlookItemCollection;

constexpr std::int64_t kBatch = 1000;
constexpr std::uint64_t kFirstDelivery = 0x01C0000000000000U;
constexpr std::uint64_t kSecond = 10'000'000;

void Check(platform::HRESULT result) {
  if (platform::Failed(result)) ::abort();
}

std::u16string Numbered(const char16_t* text, std::int64_t number) {
  std::u16string result = text;
  for (const char digit : std::to_string(number)) result += static_cast<char16_t>(digit);
  return result;
}
std::u16string FirstName(std::int64_t number) { return Numbered(u"J\u00F6rg ", number % 997); }
std::u16string LastName(std::int64_t number) { return Numbered(u"Mustermann-", number); }
std::u16string Subject(std::int64_t number) { return Numbered(u"About ", number % 997); }
std::uint64_t Delivery(std::int64_t number) {
  return kFirstDelivery + static_cast<std::uint64_t>(number) * kSecond;
}

// A device in a folder of its own, logged on.
class Device {
 public:
  explicit Device(std::int64_t size) {
    std::string name = (std::filesystem::temp_directory_path() / "tamu-bench-XXXXXX").string();
    folder_ = ::mkdtemp(name.data());
    ::setenv("TAMU_HOME", folder_.c_str(), 1);
    OpenContacts();
    OpenInbox();
    for (std::int64_t done = 0; done < size; done += kBatch) {
      device::Batch batch;
      Check(batch.Begin());
      for (std::int64_t i = done; i < done + kBatch; ++i) {
        AddContact(i);
        AddMessage(i);
      }
      Check(batch.Commit());
    }
  }
  ~Device() {
    inbox_.reset();
    session_.reset();
    contacts_.reset();
    application_.reset();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  void AddContact(std::int64_t number) {
    ComPtr<IContact> contact;
    IDispatch* made = nullptr;
    Check(contacts_->Add(&made));
    contact.reset(static_cast<IContact*>(made));
    std::u16string first = FirstName(number);
    std::u16string last = LastName(number);
    std::u16string company = u"Example Company Ltd.";
    std::u16string mail = Numbered(u"somebody@example.org", number);
    Check(contact->put_FirstName(first.data()));
    Check(contact->put_LastName(last.data()));
    Check(contact->put_CompanyName(company.data()));
    Check(contact->put_Email1Address(mail.data()));
    Check(contact->Save());
  }

  void AddMessage(std::int64_t number) {
    ComPtr<platform::IMessage> message;
    Check(inbox_->CreateMessage(nullptr, 0, message.put()));
    std::u16string subject = Subject(number);
    std::array<platform::SPropValue, 2> values{};
    values[0].ulPropTag = platform::PR_SUBJECT;
    values[0].Value.lpszW = subject.data();
    values[1].ulPropTag = platform::PR_MESSAGE_DELIVERY_TIME;
    values[1].Value.ft = {static_cast<std::uint32_t>(Delivery(number)),
                          static_cast<std::uint32_t>(Delivery(number) >> 32)};
    Check(message->SetProps(values.size(), values.data(), nullptr));
  }

  [[nodiscard]] IPOutlookItemCollection* contacts() const noexcept { return contacts_.get(); }
  [[nodiscard]] IMAPIFolder* inbox() const noexcept { return inbox_.get(); }

 private:
  void OpenContacts() {
    Check(platform::CoCreateInstance(platform::CLSID_Application, nullptr,
                                     platform::kInProcessServer, platform::IID_IPOutlookApp,
                                     application_.put_void()));
    Check(application_->Logon(0));
    ComPtr<platform::IFolder> folder;
    Check(application_->GetDefaultFolder(platform::kContactsFolder, folder.put()));
    Check(folder->get_Items(contacts_.put()));
  }

  void OpenInbox() {
    Check(platform::MAPIInitialize(nullptr));
    Check(platform::MAPILogonEx(0, nullptr, nullptr, 0, session_.put()));
    ComPtr<platform::IMAPITable> table;
    Check(session_->GetMsgStoresTable(0, table.put()));
    platform::SRowSet* rows = nullptr;
    Check(table->QueryRows(1, 0, &rows));
    const platform::SBinary& id = rows->aRow[0].lpProps[0].Value.bin;
    ComPtr<platform::IMsgStore> store;
    Check(session_->OpenMsgStore(0, id.cb,
                                 static_cast<platform::ENTRYID*>(static_cast<void*>(id.lpb)),
                                 nullptr, 0, store.put()));
    platform::FreeProws(rows);
    std::uint32_t size = 0;
    platform::ENTRYID* inbox = nullptr;
    Check(store->GetReceiveFolder(nullptr, 0, &size, &inbox, nullptr));
    platform::IUnknown* opened = nullptr;
    Check(store->OpenEntry(size, inbox, nullptr, 0, nullptr, &opened));
    inbox_.reset(static_cast<IMAPIFolder*>(opened));
    platform::MAPIFreeBuffer(inbox);
  }

  std::string folder_;
  ComPtr<platform::IPOutlookApp> application_;
  ComPtr<IPOutlookItemCollection> contacts_;
  ComPtr<platform::IMAPISession> session_;
  ComPtr<IMAPIFolder> inbox_;
};

// Filled once for all measurements of a size.
Device& DeviceWith(std::int64_t size) {
  static std::map<std::int64_t, std::unique_ptr<Device>> devices;
  auto& device = devices[size];
  if (device == nullptr) device = std::make_unique<Device>(size);
  return *device;
}

// Steps that jump about in what is there.
std::int64_t Next(std::int64_t number, std::int64_t size) { return (number + 7919) % size; }

void BM_ModelSaveContact(benchmark::State& state) {
  Device& device = DeviceWith(state.range(0));
  std::int64_t number = 10'000'000;
  for (auto _ : state) device.AddContact(number++);
}

void BM_ModelFindByName(benchmark::State& state) {
  Device& device = DeviceWith(state.range(0));
  std::int64_t number = 0;
  for (auto _ : state) {
    number = Next(number, state.range(0));
    std::u16string restriction =
        u"[FirstName]=\"" + FirstName(number) + u"\" AND [LastName]=\"" + LastName(number) + u"\"";
    ComPtr<IDispatch> found;
    Check(device.contacts()->Find(restriction.data(), found.put()));
    if (!found) return state.SkipWithError("not found");
  }
}

void BM_ModelFindExactly(benchmark::State& state) {
  Device& device = DeviceWith(state.range(0));
  ComPtr<platform::IExactFind> index;
  Check(device.contacts()->QueryInterface(platform::IID_IExactFind, index.put_void()));
  std::int64_t number = 0;
  for (auto _ : state) {
    number = Next(number, state.range(0));
    const std::u16string first = FirstName(number);
    const std::u16string last = LastName(number);
    const auto length = [](const std::u16string& text) {
      return static_cast<std::uint32_t>(text.size());
    };
    const std::array<platform::ExactTerm, 5> terms = {
        {{u"LastName", last.data(), length(last), 0},
         {u"FirstName", first.data(), length(first), 0},
         {u"MiddleName", nullptr, 0, 0},
         {u"Title", nullptr, 0, 0},
         {u"Suffix", nullptr, 0, 0}}};
    ComPtr<IDispatch> found;
    Check(index->FindExact(terms.data(), terms.size(), found.put()));
    if (!found) return state.SkipWithError("not found");
  }
}

void BM_ModelWalkItems(benchmark::State& state) {
  Device& device = DeviceWith(state.range(0));
  std::int64_t walked = 0;
  for (auto _ : state) {
    std::int32_t count = 0;
    Check(device.contacts()->get_Count(&count));
    for (std::int32_t i = 1; i <= count; ++i) {
      ComPtr<IDispatch> item;
      Check(device.contacts()->Item(i, item.put()));
      ++walked;
    }
  }
  state.SetItemsProcessed(walked);
}

void BM_ModelSaveMessage(benchmark::State& state) {
  Device& device = DeviceWith(state.range(0));
  std::int64_t number = 10'000'000;
  for (auto _ : state) device.AddMessage(number++);
}

// Whether a message is there: what an import asks before it adds one.
void FindMessages(benchmark::State& state, bool there) {
  Device& device = DeviceWith(state.range(0));
  ComPtr<platform::IExactMailFind> index;
  Check(device.inbox()->QueryInterface(platform::IID_IExactMailFind, index.put_void()));
  ComPtr<platform::IMAPITable> table;
  Check(device.inbox()->GetContentsTable(0, table.put()));
  std::int64_t number = 0;
  for (auto _ : state) {
    number = Next(number, state.range(0));
    const std::u16string subject = there ? Subject(number) : u"Nothing";
    std::array<std::uint8_t, 16> id{};
    std::uint32_t found = 0;
    Check(index->FindMessage(Delivery(number), kSecond, subject.data(),
                             static_cast<std::uint32_t>(subject.size()), id.data(), &found));
    if ((found != 0) != there) return state.SkipWithError("a wrong answer");
    if (there) continue;
    std::uint32_t rows = 0;
    Check(table->GetRowCount(0, &rows));
    benchmark::DoNotOptimize(rows);
  }
}
void BM_ModelFindMessage(benchmark::State& state) { FindMessages(state, true); }
void BM_ModelFindNoMessage(benchmark::State& state) { FindMessages(state, false); }

void BM_ModelWalkMessages(benchmark::State& state) {
  Device& device = DeviceWith(state.range(0));
  std::int64_t walked = 0;
  for (auto _ : state) {
    ComPtr<platform::IMAPITable> table;
    Check(device.inbox()->GetContentsTable(0, table.put()));
    for (std::uint32_t read = 1; read != 0; walked += read) {
      platform::SRowSet* rows = nullptr;
      Check(table->QueryRows(50, 0, &rows));
      read = rows->cRows;
      platform::FreeProws(rows);
    }
  }
  state.SetItemsProcessed(walked);
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(BM_ModelFindByName)->Apply(&Sizes);
BENCHMARK(BM_ModelFindExactly)->Apply(&Sizes);
BENCHMARK(BM_ModelWalkItems)->Apply(&Sizes);
BENCHMARK(BM_ModelFindMessage)->Apply(&Sizes);
BENCHMARK(BM_ModelFindNoMessage)->Apply(&Sizes);
BENCHMARK(BM_ModelWalkMessages)->Apply(&Sizes);
// These add to what is there: they come last.
BENCHMARK(BM_ModelSaveContact)->Apply(&Sizes)->Iterations(200);
BENCHMARK(BM_ModelSaveMessage)->Apply(&Sizes)->Iterations(200);

}  // namespace
}  // namespace tamu
