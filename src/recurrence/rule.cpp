#include "recurrence/rule.h"

#include <type_traits>

#include "core/memory.h"

namespace tamu {
namespace {

static_assert(std::is_trivial_v<ErgRule> && std::is_standard_layout_v<ErgRule>);
static_assert(offsetof(ErgRule, kind) == 0 && sizeof(ErgRule::kind) == 4);
static_assert(offsetof(ErgRule, node) == sizeof(void*));
static_assert(offsetof(ErgRule, end_date) == 2 * sizeof(void*) && sizeof(ErgRule::end_date) == 20);
static_assert(sizeof(void*) != 4 || sizeof(ErgRule) == 28);
static_assert(sizeof(ErgMinutely) == 8 && offsetof(ErgMinutely, duration) == 4);
static_assert(sizeof(ErgTime::hour) == 4 && sizeof(ErgTime::end_marker) == 1);
static_assert(sizeof(ErgNumber::value) == 4 && sizeof(ErgNumber::end_marker) == 1);

constexpr bool KindsStandInOrder() {
  for (std::size_t i = 0; i < kErgKinds.size(); ++i) {
    // A finer kind alone may be nested, which bounds the depth of every tree that is built by it.
    if (kErgKinds[i].kind != i + 1 || kErgKinds[i].max_nested >= kErgKinds[i].kind) return false;
  }
  return true;
}
static_assert(KindsStandInOrder());

template <typename Node>
ErgView ViewOf(ErgKind kind, void* node) noexcept {
  Node* const typed = static_cast<Node*>(node);
  ErgView view;
  view.kind = kind;
  view.interval = typed->interval;
  view.duration = typed->duration;
  if constexpr (requires { typed->times; }) view.times = typed->times;
  if constexpr (requires { typed->entries; }) view.entries = typed->entries;
  if constexpr (requires { typed->groups; }) view.groups = typed->groups;
  if constexpr (requires { typed->numbers; }) view.numbers = typed->numbers;
  if constexpr (requires { typed->nested; }) view.nested = typed->nested;
  if constexpr (requires { typed->nested_kind; }) {
    view.nested_kind = typed->nested_kind;
  } else if (view.nested != nullptr) {
    view.nested_kind = kErgMinutely;
  }
  return view;
}

using ViewFunction = ErgView (*)(ErgKind, void*) noexcept;
constexpr std::array<ViewFunction, kErgKinds.size()> kViews = {
    &ViewOf<ErgMinutely>,     &ViewOf<ErgDaily>,        &ViewOf<ErgWeekly>,
    &ViewOf<ErgMonthlyByPos>, &ViewOf<ErgMonthlyByDay>, &ViewOf<ErgYearlyByMonth>,
    &ViewOf<ErgYearlyByDay>,
};

template <typename Item>
void FreeList(Item* item) noexcept {
  while (item != nullptr) {
    Item* const next = item->next;
    if constexpr (requires { item->times; }) FreeList(item->times);
    if constexpr (requires { item->more_weekdays; }) FreeList(item->more_weekdays);
    if constexpr (requires { item->occurrence; }) FreeList(item->occurrence.next);
    if constexpr (requires { item->weekday.next; }) FreeList(item->weekday.next);
    MEM_Free(item);
    item = next;
  }
}

bool SameItem(const ErgTime& a, const ErgTime& b) noexcept {
  return a.hour == b.hour && a.minute == b.minute && a.end_marker == b.end_marker;
}

bool SameItem(const ErgNumber& a, const ErgNumber& b) noexcept {
  return a.value == b.value && a.end_marker == b.end_marker;
}

template <typename Item>
bool SameList(const Item* a, const Item* b) noexcept;

bool SameItem(const ErgWeekdayEntry& a, const ErgWeekdayEntry& b) noexcept {
  return a.weekday == b.weekday && a.end_marker == b.end_marker &&
         SameList(a.more_weekdays, b.more_weekdays) && SameList(a.times, b.times);
}

bool SameItem(const ErgPositionGroup& a, const ErgPositionGroup& b) noexcept {
  return SameList(&a.occurrence, &b.occurrence) && SameList(&a.weekday, &b.weekday) &&
         SameList(a.times, b.times);
}

template <typename Item>
bool SameList(const Item* a, const Item* b) noexcept {
  for (; a != nullptr && b != nullptr; a = a->next, b = b->next) {
    if (!SameItem(*a, *b)) return false;
  }
  return a == nullptr && b == nullptr;
}

bool SameNode(const ErgView& a, const ErgView& b) noexcept {
  return a.kind == b.kind && a.interval == b.interval && a.duration == b.duration &&
         SameList(a.times, b.times) && SameList(a.entries, b.entries) &&
         SameList(a.groups, b.groups) && SameList(a.numbers, b.numbers);
}

}  // namespace

ErgView ERG_View(ErgKind kind, void* node) noexcept {
  if (kind < 1 || kind > kErgKinds.size() || node == nullptr) return {};
  return kViews[kind - 1](kind, node);
}

ErgView ERG_ViewNested(const ErgView& view) noexcept {
  if (view.kind == kErgNone || view.nested_kind > kErgKinds[view.kind - 1].max_nested) return {};
  return ERG_View(view.nested_kind, view.nested);
}

void ERG_Free(ErgRule* rule) noexcept {
  if (rule->kind < 1 || rule->kind > kErgKinds.size()) return;
  void* node = rule->node;
  for (ErgView view = ERG_View(rule->kind, node); view.kind != kErgNone;
       view = ERG_View(view.nested_kind, node)) {
    FreeList(view.times);
    FreeList(view.entries);
    FreeList(view.groups);
    FreeList(view.numbers);
    MEM_Free(node);
    node = view.nested;
  }
  rule->kind = kErgNone;
  rule->node = nullptr;
}

std::string_view ERG_EndDate(const ErgRule& rule) noexcept {
  const std::string_view field(rule.end_date, sizeof rule.end_date);
  return field.substr(0, field.find('\0'));
}

bool ERG_Equal(const ErgRule& a, const ErgRule& b) noexcept {
  if (a.kind != b.kind || ERG_EndDate(a) != ERG_EndDate(b)) return false;
  ErgView left = ERG_View(a.kind, a.node);
  ErgView right = ERG_View(b.kind, b.node);
  while (left.kind != kErgNone && SameNode(left, right)) {
    left = ERG_ViewNested(left);
    right = ERG_ViewNested(right);
  }
  return left.kind == kErgNone && right.kind == kErgNone;
}

}  // namespace tamu
