// rule_reading.h - a recurrence rule's text, read for people: the tree, its words, and why a text is
// no rule.
//   Ownership  the tree is the object's.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_RULE_READING_H_
#define TAMU_TOOLS_RULE_READING_H_

#include <string>

#include "recurrence/rule.h"

namespace tamu::tool {

class RuleReading {
 public:
  // Reads the text of a rule.
  explicit RuleReading(std::string text);
  ~RuleReading() { ERG_Free(&rule_); }
  RuleReading(const RuleReading&) = delete;
  RuleReading& operator=(const RuleReading&) = delete;

  // Why the text is no rule, safe to show; "" when it is one.
  [[nodiscard]] const std::string& problem() const noexcept { return problem_; }

  // Of a rule:
  [[nodiscard]] const ErgRule& rule() const noexcept { return rule_; }
  // In English, not yet safe to show.
  [[nodiscard]] std::string Words() const;
  // As the library writes it.
  [[nodiscard]] std::string Generated() const;
  // The tail of the text that was passed over, "" when there is none.
  [[nodiscard]] const std::string& ignored() const noexcept { return rest_; }

 private:
  void Explain(const std::string& text, std::string_view rest);

  ErgRule rule_{};
  std::string rest_;
  std::string problem_;
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_RULE_READING_H_
