/* tests/abi/calls_test.c - the ten functions called from C, as a program outside the library does.
 */
#include <stdio.h>
#include <string.h>

#include "tamu/tamu.h"

#define PATH_UNITS 512

static int g_failures = 0;

static void Expect(int holds, const char* what, int line) {
  if (holds) return;
  ++g_failures;
  fprintf(stderr, "%s:%d: not so: %s\n", __FILE__, line, what);
}
#define EXPECT(condition) Expect((condition) ? 1 : 0, #condition, __LINE__)

/* An ASCII text as wide text; what does not fit is cut. */
static const TamuWchar* Wide(const char* text, TamuWchar* out, size_t units) {
  size_t i = 0;
  for (; i + 1 < units && text[i] != '\0'; ++i) out[i] = (TamuWchar)(unsigned char)text[i];
  out[i] = 0;
  return out;
}

static int WideIs(const TamuWchar* wide, const char* text) {
  size_t i = 0;
  for (; text[i] != '\0'; ++i)
    if (wide[i] != (TamuWchar)(unsigned char)text[i]) return 0;
  return wide[i] == 0;
}

/* What the callback is told to do, and what it has seen. */
typedef struct Reading {
  const TamuWchar* write_to;
  int cards;
  char first_phone[32];
  char luid[512];
  uint32_t name_length;
  TamuWchar name[64];
  TamuResult write_result;
} Reading;

static uint32_t OnObject(ObjectKind kind, ObjectRecord* record, TamuResult status, void* user) {
  Reading* const reading = (Reading*)user;
  const Property* phone = TAMU_PTR(Property, record->contact.prop_tel);
  EXPECT(kind == KIND_CONTACT);
  EXPECT(status == TAMU_PARSE_OK);
  if (reading->cards++ == 0) {
    if (phone != NULL) {
      const StringItem* value = TAMU_PTR(StringItem, phone->values);
      const char* text = value != NULL ? TAMU_PTR(char, value->text) : NULL;
      snprintf(reading->first_phone, sizeof reading->first_phone, "%s", text != NULL ? text : "");
    }
    snprintf(reading->luid, sizeof reading->luid, "%s", record->contact.luid);
    reading->name_length = TAMU_GetObjectName(kind, record, reading->name, 64);
  }
  /* Writing empties the record; the library frees it afterwards all the same. */
  if (reading->write_to != NULL) {
    reading->write_result |= TAMU_WriteObject(kind, record, reading->write_to, 0);
    EXPECT(record->contact.prop_n == 0);
  }
  return 12345; /* ignored */
}

static void TestResultTexts(void) {
  EXPECT(WideIs(TAMU_CodeToString(TAMU_OK), "OK"));
  EXPECT(WideIs(TAMU_CodeToString(TAMU_PARSE_ERROR), "Parsing error"));
  EXPECT(WideIs(TAMU_CodeToString(11), "Unknown TAMU error, code=11"));
}

static void TestReadAndWrite(const char* out_path) {
  TamuWchar in[PATH_UNITS];
  TamuWchar out[PATH_UNITS];
  Reading first = {0};
  Reading second = {0};
  ObjectRecord empty;

  /* An empty card first, so that the file is new and the cards of the example are appended. */
  memset(&empty, 0, sizeof empty);
  memcpy(empty.contact.version, "2.1", 4);
  EXPECT(TAMU_WriteObject(KIND_CONTACT, &empty, Wide(out_path, out, PATH_UNITS), 1) == TAMU_OK);
  EXPECT(empty.contact.version[0] == '\0');

  first.write_to = out;
  EXPECT(TAMU_ReadObjects(Wide(TAMU_EXAMPLES "/irmc_luids.vcf", in, PATH_UNITS), OnObject,
                          &first) == TAMU_OK);
  EXPECT(first.cards == 3);
  EXPECT(first.write_result == TAMU_OK);
  EXPECT(strcmp(first.first_phone, "+1 555 0170") == 0);
  EXPECT(strcmp(first.luid, "00000101") == 0);
  EXPECT(first.name_length == 11 && WideIs(first.name, "Anna Petrov"));

  EXPECT(TAMU_ReadObjects(out, OnObject, &second) == TAMU_OK);
  EXPECT(second.cards == 4);
  EXPECT(TAMU_ReadObjects(out, NULL, NULL) == TAMU_OK);
  remove(out_path);
}

static void TestFailures(void) {
  TamuWchar path[PATH_UNITS];
  ObjectRecord record;
  Reading reading = {0};
  memset(&record, 0, sizeof record);
  EXPECT(TAMU_ReadObjects(Wide("/nowhere/at all.vcf", path, PATH_UNITS), OnObject, &reading) ==
         TAMU_FILE_NOT_OPENED);
  EXPECT(TAMU_ReadObjects(Wide(TAMU_EXAMPLES "/README.md", path, PATH_UNITS), OnObject, &reading) ==
         TAMU_NO_VALID_OBJECT);
  EXPECT(TAMU_WriteObject(KIND_CONTACT, &record, Wide("/nowhere/at all.vcf", path, PATH_UNITS),
                          1) == TAMU_FILE_NOT_OPENED);
  EXPECT(reading.cards == 0);
}

/* Without a TAMU_Open before, no store is open. */
static void TestStoresThatAreNotOpen(void) {
  ObjectRecord record;
  char id[16] = "unset";
  memset(&record, 0, sizeof record);
  EXPECT(TAMU_GetObjectById(KIND_CONTACT, NULL, NULL) == TAMU_INVALID_ID);
  EXPECT(TAMU_GetObjectById(KIND_CONTACT, "00000001", NULL) == TAMU_GENERAL_FAILURE);
  EXPECT(TAMU_GetObjectById(KIND_CONTACT, "00000001", &record) == TAMU_PIM_NOT_OPENED);
  EXPECT(TAMU_AddObject(KIND_CONTACT, &record, id) == TAMU_PIM_NOT_OPENED);
  EXPECT(TAMU_ModifyObject(KIND_CONTACT, "00000001", &record) == TAMU_PIM_NOT_OPENED);
  EXPECT(TAMU_FindObject(KIND_CONTACT, &record, id, 0) == 0);
  EXPECT(TAMU_Close() == TAMU_OK);
}

/* Whether the device has stores or not. */
static void TestOpenAndClose(void) {
  const TamuResult opened = TAMU_Open();
  EXPECT(opened == TAMU_OK || opened == TAMU_GENERAL_PIM_ERROR);
  EXPECT(TAMU_Close() == TAMU_OK);
}

int main(int argc, char** argv) {
  char out_path[PATH_UNITS];
  snprintf(out_path, sizeof out_path, "%s.vcf", argc > 0 ? argv[0] : "calls_test");
  TestResultTexts();
  TestReadAndWrite(out_path);
  TestFailures();
  TestStoresThatAreNotOpen();
  TestOpenAndClose();
  return g_failures == 0 ? 0 : 1;
}
