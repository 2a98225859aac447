/* tamu/tamu.h - the public interface of the object store library, for C11 and C++11 or later.
 *
 * The library turns vCard 2.1, vCalendar 1.0, vNote 1.1 and vMessage 1.1 files into object records
 * and records into such files, and adds, modifies, finds and fetches objects in the device's
 * stores.
 *
 * Records: one `ObjectRecord` of 9792 bytes is one object: a contact, an event or to-do, a note or
 * a message. Its layout is the same on every machine, 32 or 64 bits; a record whose bytes are all
 * zero is empty. The record does not say its kind: an `ObjectKind` always goes with it.
 *
 * Units: lengths and offsets are bytes, lengths of wide text are 16-bit units. Text in records is
 * 8-bit and NUL-terminated, in the character set of the file it came from, still encoded.
 *
 * Ownership: a record owns everything that can be reached from it: property chains, their
 * parameters and values, body parts and their text, and the temporary files that body parts name.
 *
 * - Property chains come from the library alone: they are read (TAMU_ReadObjects) or fetched
 *   (TAMU_GetObjectById). A caller never builds or frees one.
 * - A message's inline texts may be filled by the caller.
 * - A record from TAMU_GetObjectById is released by writing it with TAMU_WriteObject, which frees
 *   what the record owns and leaves it empty.
 * - TAMU_AddObject, TAMU_ModifyObject and TAMU_FindObject leave the caller's record as it is.
 * - A record in a ReadCallback belongs to the library and lives until the callback returns.
 *
 * Errors: functions return a TamuResult; nothing is thrown.
 *
 * Threads: none, one caller at a time. Reading shares one record and is not re-entrant: a callback
 * may call every function but TAMU_ReadObjects.
 */
#ifndef TAMU_TAMU_H_
#define TAMU_TAMU_H_

#include <stdint.h>
#ifdef _WIN32
#include <wchar.h>
#elif !defined(__cplusplus)
#include <uchar.h>
#endif

/* One unit of UTF-16 text. */
#ifdef _WIN32
typedef wchar_t TamuWchar;
#else
typedef char16_t TamuWchar;
#endif

/* The export and calling convention of the ten functions. */
#if defined(_WIN32)
#if defined(TAMU_BUILDING_LIBRARY)
#define TAMU_API __declspec(dllexport)
#else
#define TAMU_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define TAMU_API __attribute__((visibility("default")))
#else
#define TAMU_API
#endif

/* A reference inside a record: the address of what it refers to as a 32-bit number, 0 for none.
 * Records keep this size in 64-bit processes too, where the library takes their memory from below 4
 * GiB. TAMU_PTR turns a reference into a pointer. */
typedef uint32_t TamuRef;

#ifdef __cplusplus
#include <cassert>
#include <cstddef>
#include <cstdint>
namespace tamu {

/* A TamuRef that knows what it refers to and behaves like a `T*`. Only memory below 4 GiB can be
 * referred to: that is, what the library allocated. */
template <typename T>
class Ref {
 public:
  Ref() noexcept = default;
  Ref(std::nullptr_t) noexcept : address_(0) {}
  explicit Ref(T* pointer) noexcept : address_(Pack(pointer)) {}
  Ref& operator=(T* pointer) noexcept {
    address_ = Pack(pointer);
    return *this;
  }
  T* get() const noexcept { return reinterpret_cast<T*>(static_cast<std::uintptr_t>(address_)); }
  operator T*() const noexcept { return get(); }
  T* operator->() const noexcept { return get(); }

 private:
  static TamuRef Pack(T* pointer) noexcept {
    const auto address = reinterpret_cast<std::uintptr_t>(pointer);
    assert(address <= UINT32_MAX && "records refer to the library's own memory only");
    return static_cast<TamuRef>(address);
  }
  TamuRef address_;
};

}  // namespace tamu
#define TAMU_REF(type) ::tamu::Ref<type>
#define TAMU_PTR(type, ref) (static_cast<type*>(ref))
#else
#define TAMU_REF(type) TamuRef
#define TAMU_PTR(type, ref) ((type*)(uintptr_t)(ref))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* What a record holds; passed beside every record. Any other code is unsupported
 * (TAMU_UNSUPPORTED_TYPE). */
typedef uint32_t ObjectKind;
enum {
  KIND_CONTACT = 0,   /* contact shape, "VCARD" */
  KIND_CALENDAR = 1,  /* event or to-do shape, "VCALENDAR" with "VEVENT" or "VTODO" */
  KIND_NOTE = 2,      /* note shape, "VNOTE" */
  KIND_MSG_INBOX = 3, /* message shape, "VMSG" of any folder but the next two */
  KIND_MSG_SENT = 4,  /* message shape, folder "SENTBOX" */
  KIND_MSG_OUTBOX = 5 /* message shape, folder "OUTBOX" */
};

/* What a function returns. Any other value is a failure without a text of its own. */
typedef uint32_t TamuResult;
enum {
  TAMU_OK = 0,
  TAMU_GENERAL_FAILURE = 1,    /* TAMU_GetObjectById without a record */
  TAMU_STORE_NOT_OPENED = 3,   /* the mail store is not open */
  TAMU_END_OF_STORE = 4,       /* past the last object of a store */
  TAMU_OBJECT_NOT_FOUND = 6,   /* no object has the id */
  TAMU_FILE_NOT_OPENED = 7,    /* the file did not open */
  TAMU_NO_VALID_OBJECT = 8,    /* the file's first line begins no known object */
  TAMU_INVALID_ID = 9,         /* no id, or one that cannot be read */
  TAMU_MISSING_FIELD = 10,     /* the object lacks a required field */
  TAMU_OUT_OF_MEMORY = 11,     /* memory ran out */
  TAMU_GENERAL_PIM_ERROR = 14, /* the device's store failed */
  TAMU_PIM_NOT_OPENED = 15,    /* a store operation without TAMU_Open */
  TAMU_UNSUPPORTED_TYPE = 16,  /* an unknown kind, or one that the operation does not take */
  TAMU_PARSE_OK = 17,          /* status of an object: read; never returned */
  TAMU_PARSE_WARNING =
      18, /* status of an object: read, something was skipped or cut; never returned */
  TAMU_PARSE_ERROR = 19 /* the file is malformed: what was delivered before stays delivered */
};

/* Bits of Property.flags: how a value is encoded, and whether its character set is named. */
enum {
  PROP_QP = 1,     /* quoted-printable; the writer breaks the line after every encoded line feed */
  PROP_BASE64 = 2, /* base64 */
  PROP_8BIT = 4,   /* 8bit */
  PROP_CHARSET = 8 /* a CHARSET parameter is there */
};

/* One text of a list: a parameter, or a component of a value. 12 bytes. */
typedef struct StringItem {
  TAMU_REF(char) text; /* owned, NUL-terminated; null is an empty component */
  uint8_t used;        /* always 1 */
  uint8_t unused[3];
  TAMU_REF(struct StringItem) next;
} StringItem;

/* One occurrence of a property. 20 bytes. */
typedef struct Property {
  uint32_t flags; /* PROP_QP ... */
  TAMU_REF(StringItem)
  params; /* in order, each a bare word ("HOME") or NAME=value ("CHARSET=UTF-8") */
  TAMU_REF(StringItem)
  values;             /* the value's components in order: what stood between unescaped ";" */
  uint32_t code_page; /* the code page the value is converted with; 0 = not settled yet */
  TAMU_REF(struct Property) next; /* the next occurrence of the same property */
} Property;

/* One part of a message's body. 700 bytes; the first one is embedded in the record. */
typedef struct BodyPart {
  char content_type[128];     /* "Content-Type" */
  char transfer_encoding[52]; /* "Content-Transfer-Encoding", at most 49 characters when read */
  TAMU_REF(char) text;      /* the content, owned; null when there is none or it is in temp_file */
  TamuWchar temp_file[256]; /* path of a temporary file with the content, owned; empty when there is
                               none */
  TAMU_REF(struct BodyPart) next;
} BodyPart;

/* Width of the version text of contacts, calendar items and notes. A text of 25 characters fills it
 * and has no terminator. */
#define TAMU_VERSION_WIDTH 25

/* KIND_CONTACT. Every prop_ field heads the chain of one property, null when the object has none.
 */
typedef struct ContactShape {
  uint32_t object_type; /* set by the store when it fills a record: 1 contact, 2 calendar item */
  char luid[512];       /* "X-IRMC-LUID" */
  char version[TAMU_VERSION_WIDTH]; /* "VERSION" */
  uint8_t unused[3];
  TAMU_REF(Property) prop_n;
  TAMU_REF(Property) prop_fn;
  TAMU_REF(Property) prop_nickname;
  TAMU_REF(Property) prop_adr;
  TAMU_REF(Property) prop_org;
  TAMU_REF(Property) prop_title;
  TAMU_REF(Property) prop_role;
  TAMU_REF(Property) prop_tel;
  TAMU_REF(Property) prop_url;
  TAMU_REF(Property) prop_email;
  TAMU_REF(Property) prop_note;
  TAMU_REF(Property) prop_bday;
  TAMU_REF(Property) prop_spouse;      /* "X-SPOUSE" */
  TAMU_REF(Property) prop_anniversary; /* "X-ANNIVERSARY" */
  TAMU_REF(Property) prop_children;    /* "X-CHILDREN" */
  TAMU_REF(Property) prop_assistant;   /* "X-ASSISTANT" */
  TAMU_REF(Property) prop_category;    /* "X-CAT" */
} ContactShape;

/* Values of `component` of a calendar item; any other is an empty calendar. */
enum { COMPONENT_EVENT = 1, COMPONENT_TODO = 2 };

/* KIND_CALENDAR with component 1. */
typedef struct EventShape {
  uint32_t object_type;
  char luid[512];
  char version[TAMU_VERSION_WIDTH];
  uint8_t component;
  uint8_t unused[2];
  TAMU_REF(Property) prop_categories;
  TAMU_REF(Property)
  prop_completed; /* no event property; the reader keeps one that stands in an event */
  TAMU_REF(Property) prop_description;
  TAMU_REF(Property) prop_due; /* as prop_completed */
  TAMU_REF(Property) prop_dtend;
  TAMU_REF(Property) prop_priority;
  TAMU_REF(Property) prop_dtstart;
  TAMU_REF(Property) prop_status;
  TAMU_REF(Property) prop_summary;
  TAMU_REF(Property) prop_class;
  TAMU_REF(Property) prop_location;
  TAMU_REF(Property) prop_dalarm;
  TAMU_REF(Property) prop_rrule;
  TAMU_REF(Property) prop_exdate;
  TAMU_REF(Property) prop_attendee;
  uint8_t all_day; /* "X-BLUETOOTH-ALLDAYEVENT" */
  uint8_t unused_end[3];
} EventShape;

/* KIND_CALENDAR with component 2. From the eleventh property on it differs from the event: there is
 * no location, and what follows it stands one place earlier. */
typedef struct ToDoShape {
  uint32_t object_type;
  char luid[512];
  char version[TAMU_VERSION_WIDTH];
  uint8_t component;
  uint8_t unused[2];
  TAMU_REF(Property) prop_categories;
  TAMU_REF(Property) prop_completed;
  TAMU_REF(Property) prop_description;
  TAMU_REF(Property) prop_due;
  TAMU_REF(Property)
  prop_dtend; /* no to-do property; the reader keeps one that stands in a to-do */
  TAMU_REF(Property) prop_priority;
  TAMU_REF(Property) prop_dtstart;
  TAMU_REF(Property) prop_status;
  TAMU_REF(Property) prop_summary;
  TAMU_REF(Property) prop_class;
  TAMU_REF(Property) prop_dalarm;
  TAMU_REF(Property) prop_rrule;
  TAMU_REF(Property) prop_exdate;
  TAMU_REF(Property) prop_attendee;
} ToDoShape;

/* KIND_NOTE. */
typedef struct NoteShape {
  uint32_t object_type;
  char luid[512];
  char version[TAMU_VERSION_WIDTH];
  uint8_t unused[3];
  TAMU_REF(Property) prop_dcreated;
  TAMU_REF(Property) prop_last_modified;
  TAMU_REF(Property) prop_categories;
  TAMU_REF(Property) prop_class;
  TAMU_REF(Property) prop_body;
  TAMU_REF(Property) prop_summary;
} NoteShape;

/* KIND_MSG_INBOX, KIND_MSG_SENT, KIND_MSG_OUTBOX. A width counts the terminator. */
typedef struct MessageShape {
  uint32_t object_type;
  char luid[512];
  char version[10];
  char status[7];  /* "X-IRMC-STATUS"; "READ" marks a read message */
  char type[5];    /* "X-IRMC-TYPE" */
  char folder[50]; /* "X-BT-FOLDER": "OUTBOX", "SENTBOX", or any other text for the inbox */
  uint8_t reserved[4096];
  char mime_version[10]; /* kept when read, never written */
  char return_path[100]; /* written when not empty, never read */
  char date[100];
  char from[1024];
  char to[1024];
  char cc[1024];
  char reply_to[100];
  char subject[1024];
  uint8_t unused[2];
  BodyPart body;
} MessageShape;

#define TAMU_RECORD_SIZE 9792

/* One object, in the shape that its kind names. */
typedef union ObjectRecord {
  uint8_t bytes[TAMU_RECORD_SIZE]; /* first, so that initialising with zero clears all of it */
  ContactShape contact;
  EventShape event;
  ToDoShape todo;
  NoteShape note;
  MessageShape message;
} ObjectRecord;

/* Receives one object of a file that is being read: its kind, its record, TAMU_PARSE_OK or
 * TAMU_PARSE_WARNING, and the caller's own value. The record belongs to the library and is freed
 * when the callback returns; the callback copies what it keeps, and may pass the record to every
 * function but TAMU_ReadObjects. The result is ignored. */
typedef uint32_t (*ReadCallback)(ObjectKind kind, ObjectRecord* record, TamuResult status,
                                 void* user);

/* Opens the diagnostic log and the device's stores.
 * Returns TAMU_OK, TAMU_GENERAL_PIM_ERROR when the device's store cannot be opened, or the mail
 * store's code. */
TAMU_API TamuResult TAMU_Open(void);

/* Closes the device's stores. Returns TAMU_OK, also when nothing was open. */
TAMU_API TamuResult TAMU_Close(void);

/* Replaces the stored object with the id `id` (8-bit text) by `record`.
 * Returns TAMU_OK, TAMU_INVALID_ID, TAMU_UNSUPPORTED_TYPE, TAMU_PIM_NOT_OPENED,
 * TAMU_OBJECT_NOT_FOUND, TAMU_MISSING_FIELD, TAMU_GENERAL_PIM_ERROR or the mail store's code. */
TAMU_API TamuResult TAMU_ModifyObject(ObjectKind kind, const char* id, ObjectRecord* record);

/* Adds `record` to its store and writes the new object's id, eight hexadecimal digits, to `id_out`
 * (null, or at least 9 bytes; a note's title must fit); "" on failure and for notes and messages.
 * Returns TAMU_OK, TAMU_UNSUPPORTED_TYPE, TAMU_PIM_NOT_OPENED, TAMU_MISSING_FIELD,
 * TAMU_GENERAL_PIM_ERROR or the mail store's code. */
TAMU_API TamuResult TAMU_AddObject(ObjectKind kind, ObjectRecord* record, char* id_out);

/* Looks for a stored object that matches `record` and writes its id to `id_out`. `reserved` has no
 * meaning. Returns 1 when there is one, 0 when there is none. */
TAMU_API uint32_t TAMU_FindObject(ObjectKind kind, ObjectRecord* record, char* id_out,
                                  uint32_t reserved);

/* Fills `record_out` with the stored object that has the id `id`; what it held before is
 * overwritten, not freed. Returns TAMU_OK, TAMU_INVALID_ID (no id or one that cannot be read),
 * TAMU_GENERAL_FAILURE (no record), TAMU_PIM_NOT_OPENED, TAMU_OBJECT_NOT_FOUND, or
 * TAMU_UNSUPPORTED_TYPE (notes and messages). */
TAMU_API TamuResult TAMU_GetObjectById(ObjectKind kind, const char* id, ObjectRecord* record_out);

/* Writes `record` as one vCard, vCalendar, vNote or vMessage to the file at `path`: a new or
 * emptied file when the low 8 bits of `overwrite` are not 0, else at the end of the file. Lines end
 * in CR LF. Afterwards the record is empty and what it owned is freed, also for an unknown kind;
 * only when the file does not open it is left as it was. Returns TAMU_OK, TAMU_FILE_NOT_OPENED or
 * TAMU_UNSUPPORTED_TYPE. A write that fails later, on a full disk, is not seen in the result. */
TAMU_API TamuResult TAMU_WriteObject(ObjectKind kind, ObjectRecord* record, const TamuWchar* path,
                                     uint32_t overwrite);

/* Reads every object of the file at `path` and hands each to `callback` (null: the file is only
 * parsed) with `user`. Returns TAMU_OK, TAMU_FILE_NOT_OPENED, TAMU_NO_VALID_OBJECT (the first line
 * begins no known object), TAMU_PARSE_ERROR (reading stopped at a malformed object; those before it
 * were delivered) or TAMU_OUT_OF_MEMORY. */
TAMU_API TamuResult TAMU_ReadObjects(const TamuWchar* path, ReadCallback callback, void* user);

/* The text of a result code. It is static; that of a code without one is overwritten by the next
 * such call. */
TAMU_API const TamuWchar* TAMU_CodeToString(TamuResult code);

/* Composes the name under which an object is shown: a contact's formatted or structured name, an
 * event's "summary (location)", a to-do's or note's summary, a message's "from - subject". At most
 * `capacity` - 1 units of it and a terminator are written to `name_out` (null: nothing is written,
 * and so with `capacity` 0). Returns the whole name's length in units, 0 when there is none. */
TAMU_API uint32_t TAMU_GetObjectName(ObjectKind kind, ObjectRecord* record, TamuWchar* name_out,
                                     uint32_t capacity);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* TAMU_TAMU_H_ */
