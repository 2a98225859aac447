#include "device/sqlite/sqlite_mail_store.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

#include "device/sqlite/search_keys.h"
#include "device/sqlite/statement.h"
#include "platform/cemapi.h"

namespace tamu::device {
namespace {

using platform::HRESULT;
namespace hr = platform::hr;

constexpr std::size_t kMostRows = 0x7FFFFFFF;

// File times as signed numbers in the same order.
std::int64_t DeliveryKey(std::uint64_t time) noexcept {
  return static_cast<std::int64_t>(time ^ std::uint64_t{1} << 63);
}

std::int64_t SubjectKey(std::u16string_view subject) noexcept {
  ExactKey key;
  key.Add(subject);
  return key.value();
}

class SqliteMailStore final : public MailStore {
 public:
  explicit SqliteMailStore(std::shared_ptr<Stores> stores);

  HRESULT CreateMessage(MailFolder folder, MailId* id) noexcept override;
  HRESULT DeleteMessages(MailFolder folder, std::span<const MailId> ids) noexcept override;
  HRESULT FolderOf(MailId id, MailFolder* folder) noexcept override;
  HRESULT ReadProperties(MailId id, std::span<const std::uint32_t> tags,
                         std::vector<MailProperty>* found) noexcept override;
  HRESULT SetProperties(MailId id, std::span<const MailProperty> properties) noexcept override;
  HRESULT DeleteProperties(MailId id, std::span<const std::uint32_t> tags) noexcept override;
  HRESULT AddRecipients(MailId id, std::span<const MailRecipient> recipients) noexcept override;
  HRESULT ReadRecipients(MailId id, std::vector<MailRecipient>* recipients) noexcept override;
  HRESULT ReadRows(MailFolder folder, MailId after, std::size_t limit,
                   std::span<const std::uint32_t> tags,
                   std::vector<MailRow>* rows) noexcept override;
  HRESULT Count(MailFolder folder, MailId last, std::uint32_t* count) noexcept override;
  HRESULT FindExact(MailFolder folder, const ExactMail& mail, MailId* id) noexcept override;

 private:
  [[nodiscard]] MailId NewId();
  // The message's folder in select_message_; false when there is none.
  [[nodiscard]] bool SelectMessage(MailId id);
  void CountMessages(MailFolder folder, std::int64_t difference);
  void ReadInto(MailId id, std::span<const std::uint32_t> tags, std::vector<MailProperty>* found);
  void SetProperty(MailId id, const MailProperty& property);
  // What the exact find knows of the message; null for a property that it has no longer.
  void UpdateKeys(MailId id, std::uint32_t tag, const MailValue* value);
  [[nodiscard]] bool HasSubject(MailId id, std::u16string_view subject);

  std::shared_ptr<Stores> stores_;  // outlives the statements
  Database& database_;
  Statement new_id_;
  Statement insert_message_;
  Statement delete_message_;
  Statement select_message_;
  Statement set_subject_key_;
  Statement set_delivery_key_;
  Statement set_property_;
  Statement delete_property_;
  Statement select_properties_;
  Statement last_position_;
  Statement insert_recipient_;
  Statement select_recipients_;
  Statement list_;
  Statement count_;
  Statement count_all_;
  Statement change_count_;
  Statement find_;
};

SqliteMailStore::SqliteMailStore(std::shared_ptr<Stores> stores)
    : stores_(std::move(stores)),
      database_(stores_->database()),
      new_id_(database_,
              "update mailbox set last_message = last_message + 1 "
              "where device = :device and last_message < 4294967294 returning last_message",
              "i", "i"),
      insert_message_(database_,
                      "insert into message (id, device, folder, subject_key) "
                      "values (:id, :device, :folder, :subject_key)",
                      "iiii"),
      delete_message_(
          database_, "delete from message where id = :id and device = :device and folder = :folder",
          "iii"),
      select_message_(database_, "select folder from message where id = :id and device = :device",
                      "ii", "i"),
      set_subject_key_(database_, "update message set subject_key = :key where id = :id", "ii"),
      set_delivery_key_(database_, "update message set delivery_key = :key where id = :id", "ii"),
      set_property_(database_,
                    "insert into message_property (message, tag, device, number, text) "
                    "values (:message, :tag, :device, :number, :text) "
                    "on conflict (message, tag) do update "
                    "set number = excluded.number, text = excluded.text",
                    "iiiit"),
      delete_property_(
          database_, "delete from message_property where message = :message and tag = :tag", "ii"),
      select_properties_(database_,
                         "select tag, number, text from message_property "
                         "where message = :message and tag between :first and :last order by tag",
                         "iii", "iit"),
      last_position_(
          database_,
          "select coalesce(max(position), 0) from message_recipient where message = :message", "i",
          "i"),
      insert_recipient_(database_,
                        "insert into message_recipient "
                        "(message, position, device, type, name, address_type, address) values "
                        "(:message, :position, :device, :type, :name, :address_type, :address)",
                        "iiiittt"),
      select_recipients_(database_,
                         "select type, name, address_type, address, name is not null, "
                         "address_type is not null, address is not null from message_recipient "
                         "where message = :message order by position",
                         "i", "itttiii"),
      list_(database_,
            "select id from message where device = :device and folder = :folder and id > :after "
            "order by id limit :most",
            "iiii", "i"),
      count_(database_,
             "select count(*) from message "
             "where device = :device and folder = :folder and id <= :last",
             "iii", "i"),
      count_all_(database_,
                 "select messages from mail_folder where device = :device and folder = :folder",
                 "ii", "i"),
      change_count_(database_,
                    "update mail_folder set messages = messages + :difference "
                    "where device = :device and folder = :folder",
                    "iii"),
      find_(database_,
            "select id from message where device = :device and folder = :folder "
            "and subject_key = :subject_key and delivery_key between :first and :last order by id",
            "iiiii", "i") {}

// --- Messages ---------------------------------------------------------------

MailId SqliteMailStore::NewId() {
  new_id_.SetInteger(0, database_.device());
  if (!new_id_.RunForRow()) {
    throw Failure{hr::kDiskFull, "no numbers are left for new messages", {}};
  }
  return static_cast<MailId>(new_id_.Integer(0));
}

bool SqliteMailStore::SelectMessage(MailId id) {
  select_message_.SetInteger(0, id);
  select_message_.SetInteger(1, database_.device());
  return select_message_.RunForRow();
}

void SqliteMailStore::CountMessages(MailFolder folder, std::int64_t difference) {
  change_count_.SetInteger(0, difference);
  change_count_.SetInteger(1, database_.device());
  change_count_.SetInteger(2, static_cast<std::int64_t>(folder));
  change_count_.Run();
  if (change_count_.ChangedRows() == 0) throw DamagedFailure();
}

HRESULT SqliteMailStore::CreateMessage(MailFolder folder, MailId* id) noexcept {
  MailId created = 0;
  const HRESULT result = database_.Write([&] {
    created = NewId();
    insert_message_.SetInteger(0, created);
    insert_message_.SetInteger(1, database_.device());
    insert_message_.SetInteger(2, static_cast<std::int64_t>(folder));
    insert_message_.SetInteger(3, SubjectKey({}));
    insert_message_.Run();
    CountMessages(folder, 1);
    return hr::kOk;
  });
  if (platform::Succeeded(result)) *id = created;
  return result;
}

HRESULT SqliteMailStore::DeleteMessages(MailFolder folder, std::span<const MailId> ids) noexcept {
  return database_.Write([&] {
    for (const MailId id : ids) {
      delete_message_.SetInteger(0, id);  // and, by the references, all that belongs to it
      delete_message_.SetInteger(1, database_.device());
      delete_message_.SetInteger(2, static_cast<std::int64_t>(folder));
      delete_message_.Run();
      if (delete_message_.ChangedRows() == 0) return hr::kItemNotFound;
    }
    CountMessages(folder, -static_cast<std::int64_t>(ids.size()));
    return hr::kOk;
  });
}

HRESULT SqliteMailStore::FolderOf(MailId id, MailFolder* folder) noexcept {
  return database_.Read([&] {
    if (!SelectMessage(id)) return hr::kItemNotFound;
    for (const MailFolder each : kMailFolders) {
      if (select_message_.Integer(0) != static_cast<std::int64_t>(each)) continue;
      *folder = each;
      return hr::kOk;
    }
    throw DamagedFailure();  // a folder that there is not
  });
}

// --- Properties -------------------------------------------------------------

void SqliteMailStore::ReadInto(MailId id, std::span<const std::uint32_t> tags,
                               std::vector<MailProperty>* found) {
  for (const std::uint32_t tag : tags) {
    const bool open = platform::PropType(tag) == platform::kTypeUnspecified;
    select_properties_.SetInteger(0, id);
    select_properties_.SetInteger(1, tag);
    select_properties_.SetInteger(2, open ? tag | 0xFFFF : tag);
    select_properties_.RunForRows([&] {
      MailProperty& property = found->emplace_back();
      property.tag = static_cast<std::uint32_t>(select_properties_.Integer(0));
      switch (KindOfMailType(platform::PropType(property.tag))) {
        case MailValueKind::kNumber:
          property.value = select_properties_.Integer(1);
          return true;
        case MailValueKind::kText:
          property.value = select_properties_.Text(2);
          return true;
        case MailValueKind::kBytes:
          property.value = select_properties_.GetBytes(2);
          return true;
        case MailValueKind::kNone:
          break;
      }
      throw DamagedFailure();  // a type that is never stored
    });
  }
}

HRESULT SqliteMailStore::ReadProperties(MailId id, std::span<const std::uint32_t> tags,
                                        std::vector<MailProperty>* found) noexcept {
  found->clear();
  return database_.Read([&] {
    if (!SelectMessage(id)) return hr::kItemNotFound;
    ReadInto(id, tags, found);
    return hr::kOk;
  });
}

void SqliteMailStore::UpdateKeys(MailId id, std::uint32_t tag, const MailValue* value) {
  if (tag == platform::PR_SUBJECT) {
    const auto* const text = value == nullptr ? nullptr : std::get_if<std::u16string>(value);
    set_subject_key_.SetInteger(0, SubjectKey(text == nullptr ? std::u16string_view() : *text));
    set_subject_key_.SetInteger(1, id);
    set_subject_key_.Run();
  } else if (tag == platform::PR_MESSAGE_DELIVERY_TIME) {
    const auto* const time = value == nullptr ? nullptr : std::get_if<std::int64_t>(value);
    if (time == nullptr) {
      set_delivery_key_.SetNull(0);
    } else {
      set_delivery_key_.SetInteger(0, DeliveryKey(static_cast<std::uint64_t>(*time)));
    }
    set_delivery_key_.SetInteger(1, id);
    set_delivery_key_.Run();
  }
}

void SqliteMailStore::SetProperty(MailId id, const MailProperty& property) {
  set_property_.SetInteger(0, id);
  set_property_.SetInteger(1, property.tag);
  set_property_.SetInteger(2, database_.device());
  set_property_.SetNull(3);
  set_property_.SetNull(4);
  if (const auto* number = std::get_if<std::int64_t>(&property.value)) {
    set_property_.SetInteger(3, *number);
  } else if (const auto* text = std::get_if<std::u16string>(&property.value)) {
    set_property_.SetText(4, *text);
  } else {
    set_property_.SetBytes(4, *std::get_if<Bytes>(&property.value));
  }
  set_property_.Run();
  UpdateKeys(id, property.tag, &property.value);
}

HRESULT SqliteMailStore::SetProperties(MailId id,
                                       std::span<const MailProperty> properties) noexcept {
  return database_.Write([&] {
    if (!SelectMessage(id)) return hr::kItemNotFound;
    for (const MailProperty& property : properties) SetProperty(id, property);
    return hr::kOk;
  });
}

HRESULT SqliteMailStore::DeleteProperties(MailId id, std::span<const std::uint32_t> tags) noexcept {
  return database_.Write([&] {
    if (!SelectMessage(id)) return hr::kItemNotFound;
    for (const std::uint32_t tag : tags) {
      delete_property_.SetInteger(0, id);
      delete_property_.SetInteger(1, tag);
      delete_property_.Run();
      if (delete_property_.ChangedRows() == 0) return hr::kNotFound;
      UpdateKeys(id, tag, nullptr);
    }
    return hr::kOk;
  });
}

// --- Recipients -------------------------------------------------------------

void SetOptional(Statement& statement, std::size_t parameter,
                 const std::optional<std::u16string>& text) {
  if (text) {
    statement.SetText(parameter, *text);
  } else {
    statement.SetNull(parameter);
  }
}

HRESULT SqliteMailStore::AddRecipients(MailId id,
                                       std::span<const MailRecipient> recipients) noexcept {
  return database_.Write([&] {
    if (!SelectMessage(id)) return hr::kItemNotFound;
    last_position_.SetInteger(0, id);
    if (!last_position_.RunForRow()) throw DamagedFailure();
    std::int64_t position = last_position_.Integer(0);
    for (const MailRecipient& recipient : recipients) {
      insert_recipient_.SetInteger(0, id);
      insert_recipient_.SetInteger(1, ++position);
      insert_recipient_.SetInteger(2, database_.device());
      insert_recipient_.SetInteger(3, recipient.type);
      SetOptional(insert_recipient_, 4, recipient.name);
      SetOptional(insert_recipient_, 5, recipient.address_type);
      SetOptional(insert_recipient_, 6, recipient.address);
      insert_recipient_.Run();
    }
    return hr::kOk;
  });
}

HRESULT SqliteMailStore::ReadRecipients(MailId id,
                                        std::vector<MailRecipient>* recipients) noexcept {
  recipients->clear();
  return database_.Read([&] {
    if (!SelectMessage(id)) return hr::kItemNotFound;
    select_recipients_.SetInteger(0, id);
    select_recipients_.RunForRows([&] {
      MailRecipient& recipient = recipients->emplace_back();
      recipient.type = static_cast<std::int32_t>(select_recipients_.Integer(0));
      if (select_recipients_.Integer(4) != 0) recipient.name = select_recipients_.Text(1);
      if (select_recipients_.Integer(5) != 0) recipient.address_type = select_recipients_.Text(2);
      if (select_recipients_.Integer(6) != 0) recipient.address = select_recipients_.Text(3);
      return true;
    });
    return hr::kOk;
  });
}

// --- Folders ----------------------------------------------------------------

HRESULT SqliteMailStore::ReadRows(MailFolder folder, MailId after, std::size_t limit,
                                  std::span<const std::uint32_t> tags,
                                  std::vector<MailRow>* rows) noexcept {
  rows->clear();
  return database_.Read([&] {
    list_.SetInteger(0, database_.device());
    list_.SetInteger(1, static_cast<std::int64_t>(folder));
    list_.SetInteger(2, after);
    list_.SetInteger(3, static_cast<std::int64_t>(std::min(limit, kMostRows)));
    list_.RunForRows([&] {
      rows->push_back({static_cast<MailId>(list_.Integer(0)), {}});
      return true;
    });
    for (MailRow& row : *rows) ReadInto(row.id, tags, &row.properties);
    return hr::kOk;
  });
}

HRESULT SqliteMailStore::Count(MailFolder folder, MailId last, std::uint32_t* count) noexcept {
  return database_.Read([&] {
    const bool all = last == kLastMail;
    Statement& statement = all ? count_all_ : count_;
    statement.SetInteger(0, database_.device());
    statement.SetInteger(1, static_cast<std::int64_t>(folder));
    if (!all) statement.SetInteger(2, last);
    if (!statement.RunForRow()) throw DamagedFailure();
    *count = static_cast<std::uint32_t>(statement.Integer(0));
    return hr::kOk;
  });
}

bool SqliteMailStore::HasSubject(MailId id, std::u16string_view subject) {
  const std::uint32_t tags[] = {platform::PR_SUBJECT};
  std::vector<MailProperty> found;
  ReadInto(id, tags, &found);
  if (found.empty()) return subject.empty();
  return *std::get_if<std::u16string>(&found[0].value) == subject;
}

// Different subjects may have one key: each message that is found is looked at.
HRESULT SqliteMailStore::FindExact(MailFolder folder, const ExactMail& mail, MailId* id) noexcept {
  *id = 0;
  if (mail.count == 0) return hr::kOk;
  const std::uint64_t room = std::numeric_limits<std::uint64_t>::max() - mail.first;
  const std::uint64_t last = mail.first + std::min(mail.count - 1, room);
  return database_.Read([&] {
    find_.SetInteger(0, database_.device());
    find_.SetInteger(1, static_cast<std::int64_t>(folder));
    find_.SetInteger(2, SubjectKey(mail.subject));
    find_.SetInteger(3, DeliveryKey(mail.first));
    find_.SetInteger(4, DeliveryKey(last));
    find_.RunForRows([&] {
      const auto candidate = static_cast<MailId>(find_.Integer(0));
      if (!HasSubject(candidate, mail.subject)) return true;
      *id = candidate;
      return false;
    });
    return hr::kOk;
  });
}

}  // namespace

std::unique_ptr<MailStore> MakeSqliteMailStore(std::shared_ptr<Stores> stores) noexcept {
  try {
    return std::make_unique<SqliteMailStore>(std::move(stores));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

HRESULT OpenMailStore(std::shared_ptr<MailStore>* store) noexcept {
  store->reset();
  std::shared_ptr<Stores> stores;
  if (const HRESULT result = OpenStores(&stores); platform::Failed(result)) return result;
  try {
    *store = MakeSqliteMailStore(std::move(stores));
  } catch (const std::bad_alloc&) {
    store->reset();
  }
  return *store == nullptr ? LogFailure(OutOfMemoryFailure(), {}) : hr::kOk;
}

}  // namespace tamu::device
