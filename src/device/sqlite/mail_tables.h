// device/sqlite/mail_tables.h - the tables that mail is kept in: "message" (where each message is,
// and what the exact find looks for), "message_property" with a row a property, and
// "message_recipient" below it; "mailbox" has the number of a device's last message.
//   A property is a number or a text, by the type in its tag; bytes are hexadecimal digits.
#ifndef TAMU_DEVICE_SQLITE_MAIL_TABLES_H_
#define TAMU_DEVICE_SQLITE_MAIL_TABLES_H_

namespace tamu::device {

class Database;

// Creates these. Throws as statements do.
void CreateMailTables(Database& database);

// Adds "mail_folder": the number of messages in each of a device's folders, which no one has to
// count. Throws as statements do.
void CreateMailFolders(Database& database);

}  // namespace tamu::device

#endif  // TAMU_DEVICE_SQLITE_MAIL_TABLES_H_
