/* The typical road through the library, with nothing but its ten functions: a received file goes
 * into the device's stores, and an object of the stores goes out as a file.
 *
 *   cc -std=c11 typical_road.c $(pkg-config --cflags --libs tamu) -o typical_road
 *   ./typical_road business_card.vcf copy.vcf
 */
#include <stdio.h>
#include <string.h>
#include <tamu/tamu.h>

/* Ids of contacts and calendar items have eight digits. Notes are found by their titles and messages
 * by ids of the store's own, which are longer. */
#define ID_SIZE 4096
#define PATH_SIZE 1024
#define NAME_SIZE 128

typedef struct Road {
  unsigned added;
  unsigned modified;
  unsigned failed;
  ObjectKind kind; /* of the last object that can be fetched */
  char id[ID_SIZE];
} Road;

/* Wide text as far as it is ASCII; what a real program does depends on its terminal. */
static void Print(const TamuWchar* wide) {
  for (; *wide != 0; ++wide) putchar(*wide < 128 ? (int)*wide : '?');
}

/* Paths go in as UTF-16. This one takes ASCII alone; see the header for the rest. */
static int ToWide(const char* text, TamuWchar* wide) {
  size_t i = 0;
  for (; text[i] != '\0'; ++i) {
    if (i + 1 == PATH_SIZE || (unsigned char)text[i] > 127) return 0;
    wide[i] = (TamuWchar)text[i];
  }
  wide[i] = 0;
  return 1;
}

static int Fail(const char* what, TamuResult result) {
  printf("%s: ", what);
  Print(TAMU_CodeToString(result));
  putchar('\n');
  return 1;
}

/* Called for each object of the file. The record is the library's and lives until this returns. */
static uint32_t OnObject(ObjectKind kind, ObjectRecord* record, TamuResult status, void* user) {
  Road* const road = user;
  TamuWchar name[NAME_SIZE];
  char id[ID_SIZE] = "";
  TamuResult result;
  const int found = TAMU_FindObject(kind, record, id, 0) != 0;
  result = found ? TAMU_ModifyObject(kind, id, record) : TAMU_AddObject(kind, record, id);

  name[0] = 0;
  TAMU_GetObjectName(kind, record, name, NAME_SIZE);
  Print(name);
  printf(": %s%s\n",
         result != TAMU_OK ? "failed"
         : found           ? "modified"
                           : "added",
         status == TAMU_PARSE_WARNING ? ", something of it was left out" : "");
  if (result != TAMU_OK) {
    ++road->failed;
    return 0;
  }
  if (found) {
    ++road->modified;
  } else {
    ++road->added;
  }
  /* Notes and messages cannot be fetched by an id. */
  if (kind == KIND_CONTACT || kind == KIND_CALENDAR) {
    road->kind = kind;
    memcpy(road->id, id, sizeof id);
  }
  return 0;
}

/* Fetches an object and writes it to a file of its own. */
static int WriteOut(const Road* road, const TamuWchar* path) {
  ObjectRecord record = {{0}};
  TamuResult result = TAMU_GetObjectById(road->kind, road->id, &record);
  if (result != TAMU_OK) return Fail("fetching", result);
  /* Writing frees what the record owns. */
  result = TAMU_WriteObject(road->kind, &record, path, 1);
  if (result != TAMU_OK) return Fail("writing", result);
  printf("object %s written\n", road->id);
  return 0;
}

int main(int argc, char** argv) {
  static Road road;
  TamuWchar in[PATH_SIZE];
  TamuWchar out[PATH_SIZE];
  TamuResult result;
  int failed = 0;
  if (argc != 3 || !ToWide(argv[1], in) || !ToWide(argv[2], out)) {
    fputs("usage: typical_road IN OUT\n", stderr);
    return 2;
  }
  result = TAMU_Open();
  if (result != TAMU_OK) {
    failed = Fail("opening the device", result);
    TAMU_Close();
    return failed;
  }
  result = TAMU_ReadObjects(in, OnObject, &road);
  if (result != TAMU_OK) failed = Fail("reading", result);
  printf("%u added, %u modified, %u failed\n", road.added, road.modified, road.failed);
  if (road.id[0] != '\0') failed |= WriteOut(&road, out);
  TAMU_Close();
  return failed || road.failed != 0;
}
