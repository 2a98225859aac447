#include "device/sqlite/mail_tables.h"

#include "device/sqlite/database.h"
#include "device/sqlite/statement.h"

namespace tamu::device {
namespace {

constexpr const char* kSql[] = {
    "create table mailbox (device integer primary key references device (id), "
    "last_message integer not null default 0)",
    "insert into mailbox (device) select id from device",
    "create table message (id integer primary key, "
    "device integer not null references device (id), folder integer not null, "
    "subject_key integer not null, delivery_key integer)",
    "create index message_by_folder on message (device, folder)",
    "create index message_by_subject on message (device, folder, subject_key, delivery_key) "
    "where delivery_key is not null",
    "create table message_property (message integer not null references message (id) "
    "on delete cascade, tag integer not null, device integer not null, number integer, text text, "
    "primary key (message, tag))",
    "create table message_recipient (message integer not null references message (id) "
    "on delete cascade, position integer not null, device integer not null, "
    "type integer not null, name text, address_type text, address text, "
    "primary key (message, position)) without rowid",
};

constexpr const char* kFolderSql[] = {
    "create table mail_folder (device integer not null references device (id), "
    "folder integer not null, messages integer not null, primary key (device, folder)) "
    "without rowid",
    "insert into mail_folder select mailbox.device, folders.column1, (select count(*) from message "
    "where message.device = mailbox.device and message.folder = folders.column1) "
    "from mailbox, (values (1), (2), (3)) as folders",
};

}  // namespace

void CreateMailTables(Database& database) {
  for (const char* const sql : kSql) Statement(database, sql, "").Run();
}

void CreateMailFolders(Database& database) {
  for (const char* const sql : kFolderSql) Statement(database, sql, "").Run();
}

}  // namespace tamu::device
