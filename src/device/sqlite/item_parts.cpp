#include "device/sqlite/item_parts.h"

#include <string>

#include "device/sqlite/database.h"
#include "device/sqlite/odd_dates.h"

namespace tamu::device {
namespace {

// The columns of table "recurrence" by the members that they hold: one row a column, for both
// directions.
struct NumberColumn {
  const char* name;
  std::int32_t RecurrenceRecord::*member;
};
constexpr NumberColumn kNumbers[] = {
    {"type", &RecurrenceRecord::type},
    {"duration", &RecurrenceRecord::duration},
    {"occurrences", &RecurrenceRecord::occurrences},
    {"interval", &RecurrenceRecord::interval},
    {"day_of_week_mask", &RecurrenceRecord::day_of_week_mask},
    {"day_of_month", &RecurrenceRecord::day_of_month},
    {"instance", &RecurrenceRecord::instance},
    {"month_of_year", &RecurrenceRecord::month_of_year},
};

struct DateColumn {
  const char* name;
  double RecurrenceRecord::*member;
};
constexpr DateColumn kDates[] = {
    {"pattern_start", &RecurrenceRecord::pattern_start},
    {"start_time", &RecurrenceRecord::start_time},
    {"pattern_end", &RecurrenceRecord::pattern_end},
};
constexpr const char* kOriginalStart = "original_start";

// "type, ..., pattern_start, ..., no_end, odd_dates", each behind `prefix`.
std::string RecurrenceColumns(const char* prefix) {
  std::string names;
  for (const NumberColumn& column : kNumbers) names += prefix + std::string(column.name) + ", ";
  for (const DateColumn& column : kDates) names += prefix + std::string(column.name) + ", ";
  return names + prefix + "no_end, " + prefix + "odd_dates";
}
std::string RecurrenceTypes() {
  return std::string(std::size(kNumbers), 'i') + std::string(std::size(kDates), 'r') + "it";
}

}  // namespace

ItemParts::ItemParts(Database& database)
    : device_(database.device()),
      insert_recurrence_(database,
                         "insert into recurrence (oid, device, " + RecurrenceColumns("") +
                             ") values (:oid, :device, " + RecurrenceColumns(":") + ")",
                         "ii" + RecurrenceTypes()),
      insert_exception_(database,
                        "insert into exception (oid, position, device, original_start, deleted, "
                        "odd_dates) values (:oid, :position, :device, :start, :deleted, :odd)",
                        "iiirit"),
      insert_recipient_(database,
                        "insert into recipient (oid, position, device, name, address) values "
                        "(:oid, :position, :device, :name, :address)",
                        "iiitt"),
      delete_recurrence_(database, "delete from recurrence where oid = :oid", "i"),
      delete_exceptions_(database, "delete from exception where oid = :oid", "i"),
      delete_recipients_(database, "delete from recipient where oid = :oid", "i"),
      select_recurrence_(database,
                         "select " + RecurrenceColumns("") + " from recurrence where oid = :oid",
                         "i", RecurrenceTypes()),
      select_exceptions_(database,
                         "select original_start, deleted, odd_dates from exception "
                         "where oid = :oid order by position",
                         "i", "rit"),
      select_recipients_(database,
                         "select name, address from recipient where oid = :oid order by position",
                         "i", "tt") {}

void ItemParts::InsertRecurrence(std::int32_t oid, const RecurrenceRecord& recurrence) {
  std::string odd_dates;
  std::size_t parameter = 0;
  insert_recurrence_.SetInteger(parameter++, oid);
  insert_recurrence_.SetInteger(parameter++, device_);
  for (const NumberColumn& column : kNumbers) {
    insert_recurrence_.SetInteger(parameter++, recurrence.*column.member);
  }
  for (const DateColumn& column : kDates) {
    insert_recurrence_.SetReal(parameter++,
                               ToColumn(recurrence.*column.member, column.name, &odd_dates));
  }
  insert_recurrence_.SetInteger(parameter++, recurrence.no_end ? 1 : 0);
  insert_recurrence_.SetUtf8(parameter, odd_dates);
  insert_recurrence_.Run();
}

void ItemParts::Insert(const ItemRecord& item, std::int32_t oid) {
  if (item.recurrence) InsertRecurrence(oid, *item.recurrence);
  std::int64_t position = 0;
  for (const ExceptionRecord& exception : item.exceptions) {
    std::string odd_dates;
    insert_exception_.SetInteger(0, oid);
    insert_exception_.SetInteger(1, position++);
    insert_exception_.SetInteger(2, device_);
    insert_exception_.SetReal(3, ToColumn(exception.original_start, kOriginalStart, &odd_dates));
    insert_exception_.SetInteger(4, exception.deleted ? 1 : 0);
    insert_exception_.SetUtf8(5, odd_dates);
    insert_exception_.Run();
  }
  position = 0;
  for (const RecipientRecord& recipient : item.recipients) {
    insert_recipient_.SetInteger(0, oid);
    insert_recipient_.SetInteger(1, position++);
    insert_recipient_.SetInteger(2, device_);
    insert_recipient_.SetText(3, recipient.name);
    insert_recipient_.SetText(4, recipient.address);
    insert_recipient_.Run();
  }
}

void ItemParts::Delete(std::int32_t oid) {
  for (Statement* const statement :
       {&delete_recurrence_, &delete_exceptions_, &delete_recipients_}) {
    statement->SetInteger(0, oid);
    statement->Run();
  }
}

void ItemParts::SelectRecurrence(ItemRecord* item) {
  select_recurrence_.SetInteger(0, item->oid);
  if (!select_recurrence_.RunForRow()) return;
  RecurrenceRecord& recurrence = item->recurrence.emplace();
  const std::size_t no_end = std::size(kNumbers) + std::size(kDates);
  const std::string& odd_dates = select_recurrence_.Utf8(no_end + 1);
  std::size_t at = 0;
  for (const NumberColumn& column : kNumbers) {
    recurrence.*column.member = static_cast<std::int32_t>(select_recurrence_.Integer(at++));
  }
  for (const DateColumn& column : kDates) {
    recurrence.*column.member = FromColumn(select_recurrence_.Real(at++), column.name, odd_dates);
  }
  recurrence.no_end = select_recurrence_.Integer(no_end) != 0;
}

void ItemParts::SelectExceptions(ItemRecord* item) {
  select_exceptions_.SetInteger(0, item->oid);
  select_exceptions_.RunForRows([&] {
    const double start =
        FromColumn(select_exceptions_.Real(0), kOriginalStart, select_exceptions_.Utf8(2));
    item->exceptions.push_back({start, select_exceptions_.Integer(1) != 0});
    return true;
  });
}

void ItemParts::SelectRecipients(ItemRecord* item) {
  select_recipients_.SetInteger(0, item->oid);
  select_recipients_.RunForRows([&] {
    item->recipients.push_back({select_recipients_.Text(0), select_recipients_.Text(1)});
    return true;
  });
}

}  // namespace tamu::device
