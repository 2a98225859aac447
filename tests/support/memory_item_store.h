// support/memory_item_store.h - a store of items in memory, for tests of what works over one.
//   It can be told to fail: its n-th call from now on, or every one.
#ifndef TAMU_TESTS_SUPPORT_MEMORY_ITEM_STORE_H_
#define TAMU_TESTS_SUPPORT_MEMORY_ITEM_STORE_H_

#include <algorithm>
#include <cstdint>
#include <map>
#include <new>
#include <span>
#include <utility>
#include <vector>

#include "device/pim/item_store.h"
#include "text/unicode.h"

namespace tamu::testing {

class MemoryItemStore final : public device::ItemStore {
 public:
  using HRESULT = platform::HRESULT;
  using ItemKind = device::ItemKind;
  using ItemRecord = device::ItemRecord;
  using SearchTerm = device::SearchTerm;

  // --- What tests tell it and ask it ---

  // Lets the n-th call from now (1 is the next one) answer `result`; 0 disarms.
  void FailNth(std::uint64_t n, HRESULT result) noexcept {
    fail_in_ = n;
    failure_ = result;
  }
  // Lets every call answer it; kOk ends that.
  void FailAll(HRESULT result) noexcept { fail_all_ = result; }
  [[nodiscard]] std::uint64_t calls() const noexcept { return calls_; }
  // True when the call that FailNth struck was Version.
  [[nodiscard]] bool failed_version() const noexcept { return failed_version_; }

  // --- ItemStore ---

  HRESULT Load(std::int32_t oid, ItemRecord* item) noexcept override {
    if (const HRESULT failed = NextCall(); platform::Failed(failed)) return failed;
    const auto at = items_.find(oid);
    if (at == items_.end()) return platform::hr::kItemNotFound;
    return CatchNoMemory([&] { *item = ItemRecord(at->second); });
  }

  HRESULT Save(ItemRecord* item) noexcept override {
    if (const HRESULT failed = NextCall(); platform::Failed(failed)) return failed;
    if (item->oid != 0 && !items_.contains(item->oid)) return platform::hr::kItemNotFound;
    return CatchNoMemory([&] {
      ItemRecord kept = *item;
      if (kept.oid == 0) kept.oid = last_oid_ + 1;
      items_.insert_or_assign(kept.oid, std::move(kept));
      if (item->oid == 0) item->oid = ++last_oid_;
      ++version_;
    });
  }

  HRESULT Delete(std::int32_t oid) noexcept override {
    if (const HRESULT failed = NextCall(); platform::Failed(failed)) return failed;
    if (items_.erase(oid) == 0) return platform::hr::kItemNotFound;
    ++version_;
    return platform::hr::kOk;
  }

  HRESULT Count(ItemKind kind, std::int32_t* count) noexcept override {
    if (const HRESULT failed = NextCall(); platform::Failed(failed)) return failed;
    *count = static_cast<std::int32_t>(
        std::count_if(items_.begin(), items_.end(),
                      [kind](const auto& item) { return item.second.kind == kind; }));
    return platform::hr::kOk;
  }

  HRESULT ListOids(ItemKind kind, std::int32_t after, std::size_t limit,
                   std::vector<std::int32_t>* oids) noexcept override {
    return FindCandidates(kind, {}, after, limit, oids);
  }

  // Narrows by every term, so that whoever asks with a wrong one is found out.
  HRESULT FindCandidates(ItemKind kind, std::span<const SearchTerm> terms, std::int32_t after,
                         std::size_t limit, std::vector<std::int32_t>* oids) noexcept override {
    if (const HRESULT failed = NextCall(); platform::Failed(failed)) return failed;
    return CatchNoMemory([&] {
      oids->clear();
      for (auto at = items_.upper_bound(after); at != items_.end() && oids->size() < limit; ++at) {
        const ItemRecord& item = at->second;
        if (item.kind != kind) continue;
        if (std::all_of(terms.begin(), terms.end(),
                        [&item](const SearchTerm& term) { return MayMatch(item, term); })) {
          oids->push_back(at->first);
        }
      }
    });
  }

  HRESULT Version(std::uint64_t* version) noexcept override {
    if (const HRESULT failed = NextCall(); platform::Failed(failed)) {
      failed_version_ = true;
      return failed;
    }
    *version = version_;
    return platform::hr::kOk;
  }

 private:
  template <typename Work>
  static HRESULT CatchNoMemory(const Work& work) noexcept {
    try {
      work();
      return platform::hr::kOk;
    } catch (const std::bad_alloc&) {
      return platform::hr::kOutOfMemory;
    }
  }

  HRESULT NextCall() noexcept {
    ++calls_;
    if (platform::Failed(fail_all_)) return fail_all_;
    if (fail_in_ == 0 || --fail_in_ != 0) return platform::hr::kOk;
    return failure_;
  }

  static bool MayMatch(const ItemRecord& item, const SearchTerm& term) {
    const device::PropertyValue& value = item.values[term.property];
    if (const auto* date = std::get_if<double>(&value)) return *date == term.date;
    const auto& text = std::get<std::u16string>(value);
    if (term.exact) return text == term.text;
    return UNICODE_FoldText(text) == UNICODE_FoldText(term.text);
  }

  std::map<std::int32_t, ItemRecord> items_;
  std::int32_t last_oid_ = 0;
  std::uint64_t version_ = 1;
  std::uint64_t calls_ = 0;
  bool failed_version_ = false;
  std::uint64_t fail_in_ = 0;
  HRESULT failure_ = platform::hr::kFail;
  HRESULT fail_all_ = platform::hr::kOk;
};

}  // namespace tamu::testing

#endif  // TAMU_TESTS_SUPPORT_MEMORY_ITEM_STORE_H_
