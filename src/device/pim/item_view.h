// device/pim/item_view.h - which items a collection shows, in which order, found in the store.
//   A view is live: every call answers for the store as it is at that moment. The list behind indexes
//   is kept as long as the store's version stays, so that walking over n items by index costs n
//   loads; a list of all items also stays when items have changed and none came or went, so that
//   each may be saved on the walk.
//   Errors     results of com.h, among them the store's; nothing is thrown. kUnexpected when the
//              application is not logged on.
#ifndef TAMU_DEVICE_PIM_ITEM_VIEW_H_
#define TAMU_DEVICE_PIM_ITEM_VIEW_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "device/pim/application.h"
#include "device/pim/item_order.h"
#include "device/pim/restriction.h"
#include "platform/com_ptr.h"

namespace tamu::device {

class ItemView {
 public:
  ItemView(PimApplication* application, ItemKind kind) noexcept;
  // The same items in the same order, of those only the ones that satisfy the restriction. Throws
  // std::bad_alloc when memory runs out.
  ItemView(const ItemView& view, std::shared_ptr<const Restriction> restriction);

  [[nodiscard]] PimApplication* application() const noexcept { return application_.get(); }
  [[nodiscard]] ItemKind kind() const noexcept { return kind_; }
  // A search that is under way ends.
  void SetOrder(const ItemOrder& order) noexcept;

  [[nodiscard]] platform::HRESULT Count(std::int32_t* count) noexcept;
  // The item of an index from 1; kInvalidArgument when there is none.
  [[nodiscard]] platform::HRESULT Load(std::int32_t index, ItemRecord* item) noexcept;
  // Deletes it from the store.
  [[nodiscard]] platform::HRESULT Remove(std::int32_t index) noexcept;

  // Starts a search, and gives its next item; kFalse when there is none any more. kUnexpected for
  // the next item of no search.
  void StartSearch(std::shared_ptr<const Restriction> restriction) noexcept;
  [[nodiscard]] platform::HRESULT NextFound(ItemRecord* item) noexcept;

  // The item with the lowest id that has all of these values exactly; kFalse when there is none.
  // Terms on properties that are neither text nor date are refused with kInvalidArgument.
  [[nodiscard]] platform::HRESULT FindExact(std::span<const SearchTerm> terms,
                                            ItemRecord* item) noexcept;

 private:
  // Items that a search has still to look at, page by page.
  struct Pages {
    std::vector<std::int32_t> oids;
    std::size_t next = 0;
    std::size_t page_size = 0;  // 0: there are no further pages
    std::int32_t after = 0;
  };

  // The next oid; kFalse at the end.
  [[nodiscard]] platform::HRESULT NextOid(Pages* pages, std::span<const SearchTerm> terms,
                                          std::int32_t* oid);
  // True and the item when it still is there and satisfies the view's restrictions.
  [[nodiscard]] platform::HRESULT LoadIfShown(std::int32_t oid, ItemRecord* item, bool* shown);
  [[nodiscard]] platform::HRESULT Refresh();
  [[nodiscard]] platform::HRESULT ListAll(std::vector<std::int32_t>* oids);
  [[nodiscard]] platform::HRESULT ListShown(std::vector<std::int32_t>* oids);
  [[nodiscard]] std::vector<SearchTerm> SearchTerms(const Restriction* searched) const;
  [[nodiscard]] platform::HRESULT FindOid(std::int32_t index, std::int32_t* oid);
  [[nodiscard]] platform::HRESULT LoadOnce(std::int32_t index, ItemRecord* item);

  platform::ComPtr<PimApplication> application_;
  ItemKind kind_;
  std::vector<std::shared_ptr<const Restriction>> restrictions_;
  std::optional<ItemOrder> order_;

  bool listed_ = false;
  std::uint64_t version_ = 0;
  ListStamp stamp_;  // of a list of all items
  std::vector<std::int32_t> oids_;

  std::shared_ptr<const Restriction> searched_;
  Pages search_;
};

}  // namespace tamu::device

#endif  // TAMU_DEVICE_PIM_ITEM_VIEW_H_
