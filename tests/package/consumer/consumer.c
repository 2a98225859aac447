/* Prints "OK: " and the name of the contact in a file, as far as it is ASCII. */
#include <stdio.h>
#include <tamu/tamu.h>

static void Print(const TamuWchar* wide) {
  for (; *wide != 0; ++wide) putchar(*wide < 128 ? *wide : '?');
}

static uint32_t OnObject(ObjectKind kind, ObjectRecord* record, TamuResult status, void* user) {
  TamuWchar name[64];
  (void)status;
  (void)user;
  TAMU_GetObjectName(kind, record, name, 64);
  Print(name);
  return 0;
}

int main(int argc, char** argv) {
  TamuWchar path[1024];
  size_t i = 0;
  if (argc != 2) return 2;
  for (; i < 1023 && argv[1][i] != '\0'; ++i) path[i] = (TamuWchar)(unsigned char)argv[1][i];
  path[i] = 0;
  Print(TAMU_CodeToString(TAMU_OK));
  fputs(": ", stdout);
  if (TAMU_ReadObjects(path, OnObject, NULL) != TAMU_OK) return 1;
  putchar('\n');
  return 0;
}
