#include <vector>

#include "device/call_gate.h"
#include "device/pim/guarded.h"
#include "device/pim/item_values.h"
#include "device/pim/item_view.h"
#include "device/pim/pim_objects.h"

namespace tamu::device {
namespace {

using platform::BSTR;
using platform::HRESULT;
using platform::IDispatch;
using platform::VARIANT_BOOL;
namespace hr = platform::hr;

// The collection's second interface, an object of the same identity.
class ExactFind final : public platform::IExactFind {
 public:
  ExactFind(platform::IUnknown* owner, ItemView* view) noexcept : owner_(owner), view_(view) {}

  HRESULT TAMU_COM_CALL QueryInterface(const platform::GUID& iid, void** object) override {
    return owner_->QueryInterface(iid, object);
  }
  std::uint32_t TAMU_COM_CALL AddRef() override { return owner_->AddRef(); }
  std::uint32_t TAMU_COM_CALL Release() override { return owner_->Release(); }

  HRESULT TAMU_COM_CALL FindExact(const platform::ExactTerm* terms, std::uint32_t count,
                                  IDispatch** item) override {
    TAMU_DEVICE_OUT(item, nullptr);
    TAMU_DEVICE_CALL("IExactFind::FindExact");
    return Guarded([&] {
      if (terms == nullptr && count != 0) return hr::kPointer;
      std::vector<SearchTerm> search;
      for (std::uint32_t i = 0; i < count; ++i) {
        const std::size_t property = FindProperty(view_->kind(), ArgumentText(terms[i].property));
        if (property == kNoProperty) return hr::kInvalidArgument;
        std::u16string_view text;
        if (terms[i].text != nullptr) text = {terms[i].text, terms[i].length};
        search.push_back({property, true, text, terms[i].date});
      }
      ItemRecord record;
      const HRESULT found = view_->FindExact(search, &record);
      if (found == hr::kFalse) return hr::kOk;
      TAMU_DEVICE_TRY(found);
      return OpenItem(view_->application(), std::move(record), item);
    });
  }

 private:
  platform::IUnknown* owner_;
  ItemView* view_;
};

class ItemCollection final
    : public DispatchObject<ItemCollection, platform::IPOutlookItemCollection> {
 public:
  explicit ItemCollection(ItemView view) noexcept : view_(std::move(view)) {}

  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IDispatch || iid == platform::IID_IPOutlookItemCollection;
  }
  [[nodiscard]] void* OtherInterface(const platform::GUID& iid) noexcept {
    return iid == platform::IID_IExactFind ? static_cast<platform::IExactFind*>(&exact_find_)
                                           : nullptr;
  }

  HRESULT TAMU_COM_CALL Add(IDispatch** item) override {
    TAMU_DEVICE_OUT(item, nullptr);
    TAMU_DEVICE_CALL("IPOutlookItemCollection::Add");
    if (view_.application()->store() == nullptr) return hr::kUnexpected;
    return NewItem(view_.application(), view_.kind(), item);
  }
  HRESULT TAMU_COM_CALL get_Count(std::int32_t* count) override {
    TAMU_DEVICE_OUT(count, 0);
    TAMU_DEVICE_CALL("IPOutlookItemCollection::get_Count");
    return view_.Count(count);
  }
  HRESULT TAMU_COM_CALL Find(BSTR restriction, IDispatch** item) override {
    TAMU_DEVICE_OUT(item, nullptr);
    TAMU_DEVICE_CALL("IPOutlookItemCollection::Find");
    std::shared_ptr<const Restriction> parsed;
    TAMU_DEVICE_TRY(Parse(restriction, &parsed));
    view_.StartSearch(std::move(parsed));
    return GiveNextFound(item);
  }
  HRESULT TAMU_COM_CALL FindNext(IDispatch** item) override {
    TAMU_DEVICE_OUT(item, nullptr);
    TAMU_DEVICE_CALL("IPOutlookItemCollection::FindNext");
    return GiveNextFound(item);
  }
  HRESULT TAMU_COM_CALL Item(std::int32_t index, IDispatch** item) override {
    TAMU_DEVICE_OUT(item, nullptr);
    TAMU_DEVICE_CALL("IPOutlookItemCollection::Item");
    ItemRecord record;
    TAMU_DEVICE_TRY(view_.Load(index, &record));
    return OpenItem(view_.application(), std::move(record), item);
  }
  HRESULT TAMU_COM_CALL Remove(std::int32_t index) override {
    TAMU_DEVICE_CALL("IPOutlookItemCollection::Remove");
    return view_.Remove(index);
  }
  // What comes out has the order of this collection.
  HRESULT TAMU_COM_CALL Restrict(BSTR restriction,
                                 platform::IPOutlookItemCollection** items) override {
    TAMU_DEVICE_OUT(items, nullptr);
    TAMU_DEVICE_CALL("IPOutlookItemCollection::Restrict");
    std::shared_ptr<const Restriction> parsed;
    TAMU_DEVICE_TRY(Parse(restriction, &parsed));
    if (view_.application()->store() == nullptr) return hr::kUnexpected;
    return Guarded(
        [&] { return MakeObject<ItemCollection>(items, ItemView(view_, std::move(parsed))); });
  }
  HRESULT TAMU_COM_CALL Sort(BSTR property, VARIANT_BOOL descending) override {
    TAMU_DEVICE_CALL("IPOutlookItemCollection::Sort");
    const std::size_t found = FindBracketed(view_.kind(), ArgumentText(property));
    if (!IsSortable(view_.kind(), found)) return hr::kInvalidArgument;
    view_.SetOrder({found, descending != 0});
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL get_IncludeRecurrences(VARIANT_BOOL* include) override {
    TAMU_DEVICE_OUT(include, platform::kVariantFalse);
    TAMU_DEVICE_CALL("IPOutlookItemCollection::get_IncludeRecurrences");
    return hr::kOk;
  }
  // Series come out once; showing their occurrences is not offered.
  HRESULT TAMU_COM_CALL put_IncludeRecurrences(VARIANT_BOOL include) override {
    TAMU_DEVICE_CALL("IPOutlookItemCollection::put_IncludeRecurrences");
    return include ? hr::kNotImplemented : hr::kOk;
  }
  HRESULT TAMU_COM_CALL get__NewEnum(platform::IUnknown** enumerator) override {
    TAMU_DEVICE_OUT(enumerator, nullptr);
    TAMU_DEVICE_CALL("IPOutlookItemCollection::get__NewEnum");
    return hr::kNotImplemented;
  }
  HRESULT TAMU_COM_CALL get_Application(platform::IPOutlookApp** application) override {
    return GetApplication("IPOutlookItemCollection::get_Application", view_.application(),
                          application);
  }

 private:
  [[nodiscard]] HRESULT Parse(BSTR text, std::shared_ptr<const Restriction>* parsed) const {
    if (text == nullptr) return hr::kInvalidArgument;
    return Guarded([&] {
      auto restriction = std::make_shared<Restriction>();
      TAMU_DEVICE_TRY(Restriction::Parse(view_.kind(), text, restriction.get()));
      *parsed = std::move(restriction);
      return hr::kOk;
    });
  }

  // Nothing found is a success without an item.
  [[nodiscard]] HRESULT GiveNextFound(IDispatch** item) {
    ItemRecord record;
    const HRESULT found = view_.NextFound(&record);
    if (found == hr::kFalse) return hr::kOk;
    TAMU_DEVICE_TRY(found);
    return OpenItem(view_.application(), std::move(record), item);
  }

  ItemView view_;
  ExactFind exact_find_{this, &view_};
};

}  // namespace

HRESULT MakeCollection(PimApplication* application, ItemKind kind,
                       platform::IPOutlookItemCollection** out) noexcept {
  return MakeObject<ItemCollection>(out, ItemView(application, kind));
}

}  // namespace tamu::device
