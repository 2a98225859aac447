// device/sqlite/schema.h - the tables of the database, by version: one step a version, each applied
// once to databases that are older.
//   A step that was released never changes: what comes later is a step of its own.
#ifndef TAMU_DEVICE_SQLITE_SCHEMA_H_
#define TAMU_DEVICE_SQLITE_SCHEMA_H_

#include <cstdint>
#include <span>

#include "device/sqlite/database.h"

namespace tamu::device {

// What makes a database of the version before into one of the next; uses statements of its own
// inside a transaction.
using SchemaStep = void (*)(Database& database);

// The steps from version 0, the empty database.
[[nodiscard]] std::span<const SchemaStep> SchemaSteps() noexcept;

// Marks a file as a device's database in SQLite's header ("TAMU").
inline constexpr std::int32_t kApplicationId = 0x54414D55;

// Whether every table is there that a current database has. Throws as statements do.
[[nodiscard]] bool HasTables(Database& database);

// Brings the database to the version that the steps lead to. kNewerVersion when it is beyond it,
// kCorrupt when it is another program's.
[[nodiscard]] platform::HRESULT PrepareSchema(Database& database,
                                              std::span<const SchemaStep> steps) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_SQLITE_SCHEMA_H_
