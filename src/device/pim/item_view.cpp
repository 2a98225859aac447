#include "device/pim/item_view.h"

#include <algorithm>
#include <utility>

#include "device/pim/guarded.h"
#include "device/pim/item_state.h"

namespace tamu::device {
namespace {

using platform::HRESULT;
namespace hr = platform::hr;

// Searches mostly end with their first item; what goes on takes bigger and bigger pages.
constexpr std::size_t kFirstPage = 16;
constexpr std::size_t kBiggestPage = 4096;
constexpr std::size_t kPageGrowth = 4;

// How often a list is made anew when items vanish beside it.
constexpr int kAttempts = 3;

bool Equals(const ItemRecord& item, const SearchTerm& term) {
  const PropertyValue& value = item.values[term.property];
  if (const auto* text = std::get_if<std::u16string>(&value)) return *text == term.text;
  const auto* date = std::get_if<double>(&value);
  return date != nullptr && *date == term.date;
}

}  // namespace

ItemView::ItemView(PimApplication* application, ItemKind kind) noexcept : kind_(kind) {
  application->AddRef();
  application_.reset(application);
}

ItemView::ItemView(const ItemView& view, std::shared_ptr<const Restriction> restriction)
    : application_(view.application_),
      kind_(view.kind_),
      restrictions_(view.restrictions_),
      order_(view.order_) {
  restrictions_.push_back(std::move(restriction));
}

void ItemView::SetOrder(const ItemOrder& order) noexcept {
  order_ = order;
  listed_ = false;
  searched_.reset();
}

HRESULT ItemView::Count(std::int32_t* count) noexcept {
  return Guarded([&] {
    ItemStore* store = application_->store();
    if (store == nullptr) return hr::kUnexpected;
    if (restrictions_.empty()) return store->Count(kind_, count);
    TAMU_DEVICE_TRY(Refresh());
    *count = static_cast<std::int32_t>(oids_.size());
    return hr::kOk;
  });
}

HRESULT ItemView::Load(std::int32_t index, ItemRecord* item) noexcept {
  return Guarded([&] {
    HRESULT result = LoadOnce(index, item);
    for (int attempt = 1; result == hr::kItemNotFound && attempt < kAttempts; ++attempt) {
      listed_ = false;
      result = LoadOnce(index, item);
    }
    return result;
  });
}

HRESULT ItemView::Remove(std::int32_t index) noexcept {
  return Guarded([&] {
    std::int32_t oid = 0;
    TAMU_DEVICE_TRY(FindOid(index, &oid));
    TAMU_DEVICE_TRY(application_->store()->Delete(oid));
    // The list goes on with the change that was just made, so that removing all of n items one by
    // one does not list them n times.
    oids_.erase(oids_.begin() + index - 1);
    if (platform::Failed(application_->store()->Version(&version_))) listed_ = false;
    return hr::kOk;
  });
}

void ItemView::StartSearch(std::shared_ptr<const Restriction> restriction) noexcept {
  searched_ = std::move(restriction);
  search_ = Pages{};
  search_.page_size = kFirstPage;
}

HRESULT ItemView::NextFound(ItemRecord* item) noexcept {
  return Guarded([&] {
    if (!searched_) return hr::kUnexpected;
    if (application_->store() == nullptr) return hr::kUnexpected;
    if (order_ && search_.page_size != 0) {
      TAMU_DEVICE_TRY(Refresh());
      search_.oids = oids_;
      search_.page_size = 0;
    }
    const std::vector<SearchTerm> terms = SearchTerms(searched_.get());
    while (true) {
      std::int32_t oid = 0;
      const HRESULT found = NextOid(&search_, terms, &oid);
      if (found != hr::kOk) return found;
      bool shown = false;
      TAMU_DEVICE_TRY(LoadIfShown(oid, item, &shown));
      if (shown && searched_->Matches(*item)) return hr::kOk;
    }
  });
}

HRESULT ItemView::FindExact(std::span<const SearchTerm> terms, ItemRecord* item) noexcept {
  return Guarded([&] {
    for (const SearchTerm& term : terms) {
      const ValueType type = PropertiesOf(kind_)[term.property].type;
      if (type != ValueType::kText && type != ValueType::kDate) return hr::kInvalidArgument;
    }
    if (application_->store() == nullptr) return hr::kUnexpected;
    Pages pages;
    pages.page_size = kFirstPage;
    while (true) {
      std::int32_t oid = 0;
      const HRESULT found = NextOid(&pages, terms, &oid);
      if (found != hr::kOk) return found;
      bool shown = false;
      TAMU_DEVICE_TRY(LoadIfShown(oid, item, &shown));
      if (!shown) continue;
      if (std::all_of(terms.begin(), terms.end(),
                      [item](const SearchTerm& term) { return Equals(*item, term); })) {
        return hr::kOk;
      }
    }
  });
}

HRESULT ItemView::NextOid(Pages* pages, std::span<const SearchTerm> terms, std::int32_t* oid) {
  if (pages->next == pages->oids.size() && pages->page_size != 0) {
    std::vector<std::int32_t> page;
    TAMU_DEVICE_TRY(
        application_->store()->FindCandidates(kind_, terms, pages->after, pages->page_size, &page));
    if (page.size() < pages->page_size) {
      pages->page_size = 0;
    } else {
      pages->page_size = std::min(pages->page_size * kPageGrowth, kBiggestPage);
    }
    pages->oids = std::move(page);
    pages->next = 0;
  }
  if (pages->next == pages->oids.size()) return hr::kFalse;
  *oid = pages->oids[pages->next++];
  pages->after = *oid;
  return hr::kOk;
}

HRESULT ItemView::LoadIfShown(std::int32_t oid, ItemRecord* item, bool* shown) {
  *shown = false;
  const HRESULT loaded = application_->store()->Load(oid, item);
  if (loaded == hr::kItemNotFound) return hr::kOk;
  TAMU_DEVICE_TRY(loaded);
  if (!IsWellFormed(*item)) return hr::kCorrupt;
  *shown = std::all_of(restrictions_.begin(), restrictions_.end(),
                       [item](const auto& restriction) { return restriction->Matches(*item); });
  return hr::kOk;
}

HRESULT ItemView::Refresh() {
  ItemStore* store = application_->store();
  if (store == nullptr) return hr::kUnexpected;
  std::uint64_t version = 0;
  TAMU_DEVICE_TRY(store->Version(&version));
  if (listed_ && version == version_) return hr::kOk;
  const bool all = restrictions_.empty() && !order_;
  ListStamp stamp;
  if (all) TAMU_DEVICE_TRY(store->Stamp(kind_, &stamp));
  if (!all || !listed_ || stamp != stamp_) {
    listed_ = false;
    std::vector<std::int32_t> oids;
    TAMU_DEVICE_TRY(all ? ListAll(&oids) : ListShown(&oids));
    oids_ = std::move(oids);
    stamp_ = stamp;
  }
  version_ = version;
  listed_ = true;
  return hr::kOk;
}

HRESULT ItemView::ListAll(std::vector<std::int32_t>* oids) {
  std::vector<std::int32_t> page;
  std::int32_t after = 0;
  do {
    page.clear();
    TAMU_DEVICE_TRY(application_->store()->ListOids(kind_, after, kBiggestPage, &page));
    oids->insert(oids->end(), page.begin(), page.end());
    if (!page.empty()) after = page.back();
  } while (page.size() == kBiggestPage);
  return hr::kOk;
}

HRESULT ItemView::ListShown(std::vector<std::int32_t>* oids) {
  const std::vector<SearchTerm> terms = SearchTerms(nullptr);
  ItemSorter sorter(order_.value_or(ItemOrder{}));
  Pages pages;
  pages.page_size = kFirstPage;
  ItemRecord item;
  while (true) {
    std::int32_t oid = 0;
    const HRESULT next = NextOid(&pages, terms, &oid);
    if (next == hr::kFalse) break;
    TAMU_DEVICE_TRY(next);
    bool shown = false;
    TAMU_DEVICE_TRY(LoadIfShown(oid, &item, &shown));
    if (!shown) continue;
    if (order_) {
      sorter.Add(item);
    } else {
      oids->push_back(oid);
    }
  }
  if (order_) *oids = sorter.Sorted();
  return hr::kOk;
}

std::vector<SearchTerm> ItemView::SearchTerms(const Restriction* searched) const {
  std::vector<SearchTerm> terms;
  for (const auto& restriction : restrictions_) restriction->AppendSearchTerms(&terms);
  if (searched != nullptr) searched->AppendSearchTerms(&terms);
  return terms;
}

HRESULT ItemView::FindOid(std::int32_t index, std::int32_t* oid) {
  TAMU_DEVICE_TRY(Refresh());
  if (index < 1 || static_cast<std::size_t>(index) > oids_.size()) return hr::kInvalidArgument;
  *oid = oids_[static_cast<std::size_t>(index) - 1];
  return hr::kOk;
}

HRESULT ItemView::LoadOnce(std::int32_t index, ItemRecord* item) {
  std::int32_t oid = 0;
  TAMU_DEVICE_TRY(FindOid(index, &oid));
  return application_->store()->Load(oid, item);
}

}  // namespace tamu::device
