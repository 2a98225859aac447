#include "device/sqlite/schema.h"

#include <sys/random.h>

#include <cstring>
#include <string>

#include "device/sqlite/item_tables.h"
#include "device/sqlite/mail_tables.h"
#include "device/sqlite/statement.h"

namespace tamu::device {
namespace {

using platform::HRESULT;
namespace hr = platform::hr;

constexpr const char* kNewerText =
    "made by a newer version of this program; update it, or set TAMU_HOME to another folder";
constexpr const char* kForeignText =
    "another program's database; move it away, or set TAMU_HOME to another folder";

std::int64_t ReadNumber(Database& database, const char* sql) {
  Statement statement(database, sql, "", "i");
  return statement.RunForRow() ? statement.Integer(0) : 0;
}

void Execute(Database& database, const std::string& sql) { Statement(database, sql, "").Run(); }

// The device's id is drawn, so that rows of several devices can lie in one database.
std::int64_t NewDeviceId() {
  std::uint64_t bits = 0;
  if (::getrandom(&bits, sizeof bits, 0) != static_cast<ssize_t>(sizeof bits)) {
    throw Failure{hr::kFail, "the system gives no random numbers; try again", {}};
  }
  constexpr std::uint64_t kPositive = 0x7FFFFFFFFFFFFFFFU;
  return static_cast<std::int64_t>((bits & kPositive) | 1U);
}

void CreateDevice(Database& database) {
  Execute(database,
          "create table device (id integer primary key, last_oid integer not null default 0, "
          "appointments integer not null default 0, contacts integer not null default 0, "
          "tasks integer not null default 0)");
  Statement insert(database, "insert into device (id) values (:id)", "i");
  insert.SetInteger(0, NewDeviceId());
  insert.Run();
}

void CreateVersion1(Database& database) {
  CreateDevice(database);
  CreateItemTables(database);
  CreateMailTables(database);
}

constexpr SchemaStep kSteps[] = {
    &CreateVersion1,
    &CreateMailFolders,
};

constexpr const char* kTables[] = {
    "device",
    "item",
    "contact",
    "appointment",
    "task",
    "recurrence",
    "exception",
    "recipient",
    "mailbox",
    "mail_folder",
    "message",
    "message_property",
    "message_recipient",
};

struct Marks {
  std::int64_t application = 0;
  std::int64_t version = 0;
  bool empty = false;
};

Marks ReadMarks(Database& database) {
  return {ReadNumber(database, "pragma application_id"),
          ReadNumber(database, "pragma user_version"),
          ReadNumber(database, "select count(*) from sqlite_master") == 0};
}

void CheckMarks(const Marks& marks, std::size_t newest) {
  const bool ours = marks.application == kApplicationId;
  if (!ours && !(marks.empty && marks.application == 0 && marks.version == 0)) {
    throw Failure{hr::kCorrupt, kForeignText, {}};
  }
  if (marks.version < 0 || static_cast<std::uint64_t>(marks.version) > newest) {
    throw Failure{hr::kNewerVersion, kNewerText, {}};
  }
}

}  // namespace

std::span<const SchemaStep> SchemaSteps() noexcept { return kSteps; }

bool HasTables(Database& database) {
  Statement select(database,
                   "select count(*) from sqlite_master where type = 'table' and name = :name", "t",
                   "i");
  for (const char* const table : kTables) {
    select.SetUtf8(0, table);
    if (!select.RunForRow() || select.Integer(0) == 0) return false;
  }
  return true;
}

HRESULT PrepareSchema(Database& database, std::span<const SchemaStep> steps) noexcept {
  bool current = false;
  const HRESULT read = database.Read([&] {
    const Marks marks = ReadMarks(database);
    CheckMarks(marks, steps.size());
    current = static_cast<std::uint64_t>(marks.version) == steps.size();
    return hr::kOk;
  });
  if (platform::Failed(read) || current) return read;
  return database.Write([&] {
    const Marks marks = ReadMarks(database);  // another process may have been faster
    CheckMarks(marks, steps.size());
    for (auto i = static_cast<std::size_t>(marks.version); i < steps.size(); ++i) {
      steps[i](database);
    }
    // These two take no parameters.
    Execute(database, "pragma application_id = " + std::to_string(kApplicationId));
    Execute(database, "pragma user_version = " + std::to_string(steps.size()));
    return hr::kOk;
  });
}

}  // namespace tamu::device
