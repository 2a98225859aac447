/* tests/abi/layout_test.c - the record's layout, byte for byte, as a C compiler sees it.
 *   Compiled for every machine that the library is built for: callers of different builds share
 * records' layout, so that every size and offset is checked by the compiler and again, printed, at
 * run time. */
#include <stddef.h>
#include <stdio.h>

#include "tamu/tamu.h"

/* Type, field, offset, size. */
#define FIELDS(ROW)                           \
  ROW(StringItem, text, 0, 4)                 \
  ROW(StringItem, used, 4, 1)                 \
  ROW(StringItem, next, 8, 4)                 \
                                              \
  ROW(Property, flags, 0, 4)                  \
  ROW(Property, params, 4, 4)                 \
  ROW(Property, values, 8, 4)                 \
  ROW(Property, code_page, 12, 4)             \
  ROW(Property, next, 16, 4)                  \
                                              \
  ROW(BodyPart, content_type, 0, 128)         \
  ROW(BodyPart, transfer_encoding, 128, 52)   \
  ROW(BodyPart, text, 180, 4)                 \
  ROW(BodyPart, temp_file, 184, 512)          \
  ROW(BodyPart, next, 696, 4)                 \
                                              \
  ROW(ContactShape, object_type, 0, 4)        \
  ROW(ContactShape, luid, 4, 512)             \
  ROW(ContactShape, version, 516, 25)         \
  ROW(ContactShape, prop_n, 544, 4)           \
  ROW(ContactShape, prop_fn, 548, 4)          \
  ROW(ContactShape, prop_nickname, 552, 4)    \
  ROW(ContactShape, prop_adr, 556, 4)         \
  ROW(ContactShape, prop_org, 560, 4)         \
  ROW(ContactShape, prop_title, 564, 4)       \
  ROW(ContactShape, prop_role, 568, 4)        \
  ROW(ContactShape, prop_tel, 572, 4)         \
  ROW(ContactShape, prop_url, 576, 4)         \
  ROW(ContactShape, prop_email, 580, 4)       \
  ROW(ContactShape, prop_note, 584, 4)        \
  ROW(ContactShape, prop_bday, 588, 4)        \
  ROW(ContactShape, prop_spouse, 592, 4)      \
  ROW(ContactShape, prop_anniversary, 596, 4) \
  ROW(ContactShape, prop_children, 600, 4)    \
  ROW(ContactShape, prop_assistant, 604, 4)   \
  ROW(ContactShape, prop_category, 608, 4)    \
                                              \
  ROW(EventShape, object_type, 0, 4)          \
  ROW(EventShape, luid, 4, 512)               \
  ROW(EventShape, version, 516, 25)           \
  ROW(EventShape, component, 541, 1)          \
  ROW(EventShape, prop_categories, 544, 4)    \
  ROW(EventShape, prop_completed, 548, 4)     \
  ROW(EventShape, prop_description, 552, 4)   \
  ROW(EventShape, prop_due, 556, 4)           \
  ROW(EventShape, prop_dtend, 560, 4)         \
  ROW(EventShape, prop_priority, 564, 4)      \
  ROW(EventShape, prop_dtstart, 568, 4)       \
  ROW(EventShape, prop_status, 572, 4)        \
  ROW(EventShape, prop_summary, 576, 4)       \
  ROW(EventShape, prop_class, 580, 4)         \
  ROW(EventShape, prop_location, 584, 4)      \
  ROW(EventShape, prop_dalarm, 588, 4)        \
  ROW(EventShape, prop_rrule, 592, 4)         \
  ROW(EventShape, prop_exdate, 596, 4)        \
  ROW(EventShape, prop_attendee, 600, 4)      \
  ROW(EventShape, all_day, 604, 1)            \
                                              \
  ROW(ToDoShape, object_type, 0, 4)           \
  ROW(ToDoShape, luid, 4, 512)                \
  ROW(ToDoShape, version, 516, 25)            \
  ROW(ToDoShape, component, 541, 1)           \
  ROW(ToDoShape, prop_categories, 544, 4)     \
  ROW(ToDoShape, prop_completed, 548, 4)      \
  ROW(ToDoShape, prop_description, 552, 4)    \
  ROW(ToDoShape, prop_due, 556, 4)            \
  ROW(ToDoShape, prop_dtend, 560, 4)          \
  ROW(ToDoShape, prop_priority, 564, 4)       \
  ROW(ToDoShape, prop_dtstart, 568, 4)        \
  ROW(ToDoShape, prop_status, 572, 4)         \
  ROW(ToDoShape, prop_summary, 576, 4)        \
  ROW(ToDoShape, prop_class, 580, 4)          \
  ROW(ToDoShape, prop_dalarm, 584, 4)         \
  ROW(ToDoShape, prop_rrule, 588, 4)          \
  ROW(ToDoShape, prop_exdate, 592, 4)         \
  ROW(ToDoShape, prop_attendee, 596, 4)       \
                                              \
  ROW(NoteShape, object_type, 0, 4)           \
  ROW(NoteShape, luid, 4, 512)                \
  ROW(NoteShape, version, 516, 25)            \
  ROW(NoteShape, prop_dcreated, 544, 4)       \
  ROW(NoteShape, prop_last_modified, 548, 4)  \
  ROW(NoteShape, prop_categories, 552, 4)     \
  ROW(NoteShape, prop_class, 556, 4)          \
  ROW(NoteShape, prop_body, 560, 4)           \
  ROW(NoteShape, prop_summary, 564, 4)        \
                                              \
  ROW(MessageShape, object_type, 0, 4)        \
  ROW(MessageShape, luid, 4, 512)             \
  ROW(MessageShape, version, 516, 10)         \
  ROW(MessageShape, status, 526, 7)           \
  ROW(MessageShape, type, 533, 5)             \
  ROW(MessageShape, folder, 538, 50)          \
  ROW(MessageShape, reserved, 588, 4096)      \
  ROW(MessageShape, mime_version, 4684, 10)   \
  ROW(MessageShape, return_path, 4694, 100)   \
  ROW(MessageShape, date, 4794, 100)          \
  ROW(MessageShape, from, 4894, 1024)         \
  ROW(MessageShape, to, 5918, 1024)           \
  ROW(MessageShape, cc, 6942, 1024)           \
  ROW(MessageShape, reply_to, 7966, 100)      \
  ROW(MessageShape, subject, 8066, 1024)      \
  ROW(MessageShape, body, 9092, 700)          \
                                              \
  ROW(ObjectRecord, contact, 0, 612)          \
  ROW(ObjectRecord, event, 0, 608)            \
  ROW(ObjectRecord, todo, 0, 600)             \
  ROW(ObjectRecord, note, 0, 568)             \
  ROW(ObjectRecord, message, 0, 9792)         \
  ROW(ObjectRecord, bytes, 0, 9792)

/* Type, size, alignment. */
#define TYPES(ROW)           \
  ROW(TamuRef, 4, 4)         \
  ROW(TamuWchar, 2, 2)       \
  ROW(ObjectKind, 4, 4)      \
  ROW(TamuResult, 4, 4)      \
  ROW(StringItem, 12, 4)     \
  ROW(Property, 20, 4)       \
  ROW(BodyPart, 700, 4)      \
  ROW(ContactShape, 612, 4)  \
  ROW(EventShape, 608, 4)    \
  ROW(ToDoShape, 600, 4)     \
  ROW(NoteShape, 568, 4)     \
  ROW(MessageShape, 9792, 4) \
  ROW(ObjectRecord, 9792, 4)

/* Name, value. */
#define CONSTANTS(ROW)            \
  ROW(KIND_CONTACT, 0)            \
  ROW(KIND_CALENDAR, 1)           \
  ROW(KIND_NOTE, 2)               \
  ROW(KIND_MSG_INBOX, 3)          \
  ROW(KIND_MSG_SENT, 4)           \
  ROW(KIND_MSG_OUTBOX, 5)         \
  ROW(TAMU_OK, 0)                 \
  ROW(TAMU_GENERAL_FAILURE, 1)    \
  ROW(TAMU_STORE_NOT_OPENED, 3)   \
  ROW(TAMU_END_OF_STORE, 4)       \
  ROW(TAMU_OBJECT_NOT_FOUND, 6)   \
  ROW(TAMU_FILE_NOT_OPENED, 7)    \
  ROW(TAMU_NO_VALID_OBJECT, 8)    \
  ROW(TAMU_INVALID_ID, 9)         \
  ROW(TAMU_MISSING_FIELD, 10)     \
  ROW(TAMU_OUT_OF_MEMORY, 11)     \
  ROW(TAMU_GENERAL_PIM_ERROR, 14) \
  ROW(TAMU_PIM_NOT_OPENED, 15)    \
  ROW(TAMU_UNSUPPORTED_TYPE, 16)  \
  ROW(TAMU_PARSE_OK, 17)          \
  ROW(TAMU_PARSE_WARNING, 18)     \
  ROW(TAMU_PARSE_ERROR, 19)       \
  ROW(PROP_QP, 1)                 \
  ROW(PROP_BASE64, 2)             \
  ROW(PROP_8BIT, 4)               \
  ROW(PROP_CHARSET, 8)            \
  ROW(COMPONENT_EVENT, 1)         \
  ROW(COMPONENT_TODO, 2)          \
  ROW(TAMU_RECORD_SIZE, 9792)

#define ASSERT_FIELD(type, field, offset, size)                                     \
  _Static_assert(offsetof(type, field) == (offset), #type "." #field " has moved"); \
  _Static_assert(sizeof(((type*)0)->field) == (size), #type "." #field " has resized");
#define ASSERT_TYPE(type, size, alignment)                      \
  _Static_assert(sizeof(type) == (size), #type " has resized"); \
  _Static_assert(_Alignof(type) == (alignment), #type " is aligned otherwise");
#define ASSERT_CONSTANT(name, value) _Static_assert((name) == (value), #name " has changed");

FIELDS(ASSERT_FIELD)
TYPES(ASSERT_TYPE)
CONSTANTS(ASSERT_CONSTANT)

static int g_failures = 0;

static void Expect(const char* what, size_t got, size_t expected) {
  if (got == expected) return;
  ++g_failures;
  fprintf(stderr, "%s: %lu, not %lu\n", what, (unsigned long)got, (unsigned long)expected);
}

/* The distance of two places of one live record, by their addresses. */
static size_t Distance(const void* from, const void* to) {
  return (size_t)((const char*)to - (const char*)from);
}

#define EXPECT_FIELD(type, field, offset, size)                           \
  {                                                                       \
    static type object;                                                   \
    Expect(#type "." #field, Distance(&object, &object.field), (offset)); \
    Expect("size of " #type "." #field, sizeof object.field, (size));     \
  }
#define EXPECT_TYPE(type, size, alignment)                          \
  {                                                                 \
    static type pair[2];                                            \
    Expect("size of " #type, Distance(&pair[0], &pair[1]), (size)); \
  }

int main(void) {
  FIELDS(EXPECT_FIELD)
  TYPES(EXPECT_TYPE)
  if (g_failures == 0)
    printf("layout as promised, pointers of %lu bytes\n", (unsigned long)sizeof(void*));
  return g_failures == 0 ? 0 : 1;
}
