#include "device/pim/restriction.h"

#include <array>
#include <optional>

#include "device/pim/local_date.h"
#include "device/pim/restriction_scanner.h"
#include "text/unicode.h"

namespace tamu::device {
namespace {

using platform::HRESULT;
namespace hr = platform::hr;

// Less than 0, 0 or more than 0 as the left value stands before, beside or behind the right one.
bool Holds(Restriction::Operator op, int order) noexcept {
  switch (op) {
    case Restriction::Operator::kEqual:
      return order == 0;
    case Restriction::Operator::kNotEqual:
      return order != 0;
    case Restriction::Operator::kLess:
      return order < 0;
    case Restriction::Operator::kLessOrEqual:
      return order <= 0;
    case Restriction::Operator::kGreater:
      return order > 0;
    case Restriction::Operator::kGreaterOrEqual:
      break;
  }
  return order >= 0;
}

int Order(std::int64_t left, std::int64_t right) noexcept {
  return left < right ? -1 : left > right ? 1 : 0;
}

bool MatchesText(const Restriction::Term& term, const std::u16string& text) {
  if (text.empty()) return false;
  // Folding keeps the length, so that most texts are told apart without it.
  if (text.size() != term.folded.size()) {
    if (term.op == Restriction::Operator::kEqual) return false;
    if (term.op == Restriction::Operator::kNotEqual) return true;
  }
  return Holds(term.op, UNICODE_FoldText(text).compare(term.folded));
}

// The number of a property that is no text; nothing for an empty one.
std::optional<std::int64_t> NumberIn(const Restriction::Term& term, const ItemRecord& item) {
  if (term.property == Restriction::kOid) return item.oid;
  if (term.property == Restriction::kIsRecurring) return item.recurrence ? 1 : 0;
  const PropertyValue& value = item.values[term.property];
  if (term.type == ValueType::kDate) {
    const double date = std::get<double>(value);
    if (date == platform::kNoDate) return std::nullopt;
    return SecondsOf(date);
  }
  const std::int32_t number = std::get<std::int32_t>(value);
  return term.type == ValueType::kFlag ? std::int64_t{number != 0} : number;
}

bool MatchesTerm(const Restriction::Term& term, const ItemRecord& item) {
  if (term.type == ValueType::kText) {
    return MatchesText(term, std::get<std::u16string>(item.values[term.property]));
  }
  const std::optional<std::int64_t> number = NumberIn(term, item);
  return number && Holds(term.op, Order(*number, term.number));
}

}  // namespace

// Reads a restriction with one stack, of the joins that wait for their right side: at most one in
// each parenthesis, since there is no precedence.
class RestrictionParser {
 public:
  RestrictionParser(ItemKind kind, std::u16string_view text, Restriction* restriction) noexcept
      : kind_(kind), scanner_(text), restriction_(restriction) {}

  HRESULT Parse() {
    scanner_.SkipBlanks();
    if (scanner_.AtEnd()) return hr::kOk;
    State state = State::kOperand;
    while (state != State::kDone) {
      scanner_.SkipBlanks();
      const bool good = state == State::kOperand ? ReadOperand(&state) : ReadJoin(&state);
      if (!good) return hr::kInvalidArgument;
    }
    return hr::kOk;
  }

 private:
  enum class State : std::uint8_t { kOperand, kJoin, kDone };

  bool ReadOperand(State* state) {
    if (scanner_.Take(u'(')) {
      if (depth_ == Restriction::kMaxDepth) return false;
      waiting_[++depth_] = kNone;
      return true;
    }
    Restriction::Term term;
    if (!ReadTerm(&term)) return false;
    restriction_->program_.push_back(static_cast<std::int32_t>(restriction_->terms_.size()));
    restriction_->terms_.push_back(std::move(term));
    EmitWaiting();
    *state = State::kJoin;
    return true;
  }

  bool ReadJoin(State* state) {
    if (scanner_.AtEnd()) {
      *state = State::kDone;
      return depth_ == 0;
    }
    if (scanner_.Take(u')')) {
      if (depth_ == 0) return false;
      --depth_;
      EmitWaiting();
      return true;
    }
    bool is_and = false;
    if (!scanner_.TakeJoin(&is_and)) return false;
    waiting_[depth_] = is_and ? Restriction::kAnd : Restriction::kOr;
    if (!is_and) restriction_->only_and_ = false;
    *state = State::kOperand;
    return true;
  }

  void EmitWaiting() {
    if (waiting_[depth_] != kNone) restriction_->program_.push_back(waiting_[depth_]);
    waiting_[depth_] = kNone;
  }

  bool ReadTerm(Restriction::Term* term) {
    std::u16string_view name;
    if (!scanner_.Take(u'[') || !scanner_.TakeName(&name) || !SetProperty(name, term)) return false;
    scanner_.SkipBlanks();
    if (!scanner_.TakeOperator(&term->op)) return false;
    scanner_.SkipBlanks();
    std::u16string_view value;
    return scanner_.TakeValue(depth_, &value) && SetValue(value, term);
  }

  bool SetProperty(std::u16string_view name, Restriction::Term* term) const noexcept {
    if (kind_ != ItemKind::kContact && EqualWords(name, u"IsRecurring")) {
      term->property = Restriction::kIsRecurring;
      term->type = ValueType::kFlag;
      return true;
    }
    term->property = EqualWords(name, u"Oid") ? Restriction::kOid : FindProperty(kind_, name);
    term->type = ValueType::kNumber;
    if (term->property == Restriction::kOid) return true;
    if (term->property == kNoProperty) return false;
    const PropertyInfo& row = PropertiesOf(kind_)[term->property];
    term->type = row.type;
    return row.searchable;
  }

  static bool SetValue(std::u16string_view value, Restriction::Term* term) {
    switch (term->type) {
      case ValueType::kText:
        term->text = value;
        term->folded = UNICODE_FoldText(value);
        return true;
      case ValueType::kDate:
        return SetNumber(ScanDate(value), term);
      case ValueType::kNumber:
        return SetNumber(ScanNumber(value), term);
      case ValueType::kFlag:
        return SetNumber(ScanFlag(value), term);
      case ValueType::kBytes:
        break;
    }
    return false;
  }

  template <typename Number>
  static bool SetNumber(const std::optional<Number>& number, Restriction::Term* term) noexcept {
    if (number) term->number = *number;
    return number.has_value();
  }

  static constexpr std::int32_t kNone = 0;

  ItemKind kind_;
  RestrictionScanner scanner_;
  Restriction* restriction_;
  std::size_t depth_ = 0;
  std::array<std::int32_t, Restriction::kMaxDepth + 1> waiting_{};
};

HRESULT Restriction::Parse(ItemKind kind, std::u16string_view text, Restriction* restriction) {
  *restriction = Restriction();
  return RestrictionParser(kind, text, restriction).Parse();
}

bool Restriction::Matches(const ItemRecord& item) const {
  if (only_and_) {
    for (const Term& term : terms_) {
      if (!MatchesTerm(term, item)) return false;
    }
    return true;
  }
  // Each parenthesis holds at most a left side that waits and a right side.
  std::array<bool, 2 * (kMaxDepth + 1)> stack{};
  std::size_t height = 0;
  for (const std::int32_t step : program_) {
    if (step >= 0) {
      stack[height++] = MatchesTerm(terms_[static_cast<std::size_t>(step)], item);
      continue;
    }
    --height;
    stack[height - 1] =
        step == kAnd ? stack[height - 1] && stack[height] : stack[height - 1] || stack[height];
  }
  return stack[0];
}

void Restriction::AppendSearchTerms(std::vector<SearchTerm>* terms) const {
  if (!only_and_) return;
  for (const Term& term : terms_) {
    if (term.type != ValueType::kText || term.op != Operator::kEqual) continue;
    terms->push_back(SearchTerm{.property = term.property, .exact = false, .text = term.text});
  }
}

std::size_t FindBracketed(ItemKind kind, std::u16string_view name) noexcept {
  if (name.size() >= 2 && name.front() == u'[' && name.back() == u']') {
    name = name.substr(1, name.size() - 2);
  }
  return EqualWords(name, u"Oid") ? Restriction::kOid : FindProperty(kind, name);
}

}  // namespace tamu::device
