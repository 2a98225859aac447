#include "synthetic_contacts.h"

#include <cstdlib>

#include "core/file.h"

namespace tamu::bench {
namespace {

constexpr const char* kFamilyNames[] = {"Ahrens", "Baumgartner", "Castellano",
                                        "Dubois", "Eriksson",    "Fournier"};
constexpr const char* kGivenNames[] = {"Anna", "Bernardo",  "Clara",  "Dmitri",
                                       "Elif", "Frederike", "Giorgos"};

void AddPlainCard(std::string& out, const std::string& number, const char* family,
                  const char* given) {
  out += "N:" + std::string(family) + ";" + given + ";;;\r\n";
  out += "FN:" + std::string(given) + " " + family + "\r\n";
  out += "NOTE:Met at the fair in hall " + number +
         "; wants the catalogue of next season and a call\r\n";
}

void AddEncodedCard(std::string& out, const std::string& number, const char* family,
                    const char* given) {
  const std::string encoding = ";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:";
  out += "N" + encoding + family + "=C3=A9;" + given + "=C3=BC;;;\r\n";
  out += "FN" + encoding + given + "=C3=BC " + family + "=C3=A9\r\n";
  out += "NOTE" + encoding + "Gr=C3=BC=C3=9Fe aus Halle " + number + "=0D=0A=\r\n";
  out += "Bitte den Katalog f=C3=BCr n=C3=A4chstes Jahr schicken=0D=0A=\r\n";
  out += "und anrufen\r\n";
}

}  // namespace

std::string SyntheticContacts(unsigned count) {
  std::string out;
  for (unsigned i = 0; i < count; ++i) {
    const std::string number = std::to_string(100000 + i);
    const char* const family = kFamilyNames[i % std::size(kFamilyNames)];
    const char* const given = kGivenNames[i % std::size(kGivenNames)];
    out += "BEGIN:VCARD\r\nVERSION:2.1\r\n";
    if (i % 4 == 0) {
      AddEncodedCard(out, number, family, given);
    } else {
      AddPlainCard(out, number, family, given);
    }
    out += "ADR;HOME:;;12 Long Street " + number + ";Springfield;;" + number + ";Ruritania\r\n";
    out += "ORG:Example Trading Company;Sales and Service\r\nTITLE:Head of department\r\n";
    out += "TEL;HOME;VOICE:+49 30 " + number + "\r\nTEL;CELL:+49 171 " + number + "\r\n";
    out += "TEL;WORK;VOICE;PREF:+49 40 " + number + "\r\n";
    out += "EMAIL;INTERNET:" + std::string(given) + "." + family + number + "@example.org\r\n";
    out += "URL:http://www.example.org/people/" + number + "\r\nBDAY:19700101\r\n";
    out += "X-IRMC-LUID:00" + number + "\r\nEND:VCARD\r\n";
  }
  return out;
}

TemporaryFile::TemporaryFile(const std::string& content) {
  char16_t path[kTempPathUnits];
  File file;
  if (FILE_TempFilename(nullptr, path) != 0 || FILE_Open(path, u"wb", &file) != 0 ||
      !file.Write(content) || FILE_Close(&file, path) != 0) {
    std::abort();
  }
  path_ = path;
}

TemporaryFile::~TemporaryFile() { FILE_Remove(path_.c_str()); }

}  // namespace tamu::bench
