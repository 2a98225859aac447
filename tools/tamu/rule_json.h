// rule_json.h - a recurrence rule as JSON; docs/json.md describes it.
#ifndef TAMU_TOOLS_RULE_JSON_H_
#define TAMU_TOOLS_RULE_JSON_H_

#include <nlohmann/json.hpp>

#include "recurrence/rule.h"
#include "rule_reading.h"

namespace tamu::tool {

// The tree: a node, with the finer one nested in it, and the end date in the outermost. Throws std::bad_alloc when memory runs out.
[[nodiscard]] nlohmann::ordered_json RULE_Tree(const ErgRule& rule);

// A rule that could be read, with its words, its tree and the tail that was passed over.
[[nodiscard]] nlohmann::ordered_json RULE_Json(const RuleReading& reading);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_RULE_JSON_H_
