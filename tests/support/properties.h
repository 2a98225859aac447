// support/properties.h - building properties and looking into them.
#ifndef TAMU_TESTS_SUPPORT_PROPERTIES_H_
#define TAMU_TESTS_SUPPORT_PROPERTIES_H_

#include <optional>
#include <string>
#include <vector>

#include "core/memory.h"
#include "core/records.h"
#include "text/property.h"

namespace tamu::testing {

// A property that frees itself.
class OwnedProperty {
 public:
  OwnedProperty() : node_(PROP_Append(&head_)) {}
  OwnedProperty(const std::string& value, const std::string& params,
                std::uint32_t components = kAnyComponents)
      : OwnedProperty() {
    PROP_SetFromText(value.c_str(), params.c_str(), components, node_);
  }
  ~OwnedProperty() { PROP_Free(head_); }
  OwnedProperty(const OwnedProperty&) = delete;
  OwnedProperty& operator=(const OwnedProperty&) = delete;
  Property* get() const { return node_; }
  Property* operator->() const { return node_; }

 private:
  Ref<Property> head_ = nullptr;
  Property* node_;
};

using Texts = std::vector<std::optional<std::string>>;

inline Texts TextsOf(const StringItem* item) {
  Texts texts;
  for (; item != nullptr; item = item->next) {
    texts.push_back(item->text != nullptr ? std::optional<std::string>(item->text.get())
                                          : std::nullopt);
  }
  return texts;
}

inline std::size_t ChainLength(const Property* node) {
  std::size_t length = 0;
  for (; node != nullptr; node = node->next) ++length;
  return length;
}

}  // namespace tamu::testing

#endif  // TAMU_TESTS_SUPPORT_PROPERTIES_H_
