// Reading and writing of calendars, notes and messages; vcard_bench.cpp has the floor that they stand beside.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "core/file.h"
#include "core/records.h"
#include "formats/format_table.h"
#include "synthetic_contacts.h"

namespace tamu {
namespace {

constexpr unsigned kObjects = 5000;

std::string Events() {
  std::string out;
  for (unsigned i = 0; i < kObjects; ++i) {
    const std::string number = std::to_string(10000 + i);
    out +=
        "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\nSUMMARY:Review of project " + number +
        "\r\nDESCRIPTION;ENCODING=QUOTED-PRINTABLE;CHARSET=UTF-8:Bring f=C3=BCnf copies=0D=0A=\r\n"
        "and the figures of last quarter\r\nDTSTART:20040105T100000\r\nDTEND:20040105T113000\r\n"
        "CATEGORIES:MEETING;BUSINESS\r\nPRIORITY:1\r\nLOCATION:Meeting room 2\r\n"
        "DALARM:20040105T094500;PT5M;2;Review\r\nRRULE:W1 MO WE FR #10\r\n"
        "ATTENDEE;ROLE=ORGANIZER:Jo Doe <jo@example.org>\r\nX-IRMC-LUID:" +
        number + "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
  }
  return out;
}

std::string Notes() {
  std::string out;
  for (unsigned i = 0; i < kObjects; ++i) {
    out +=
        "BEGIN:VNOTE\r\nVERSION:1.1\r\nDCREATED:20040105T100000\r\n"
        "BODY;ENCODING=QUOTED-PRINTABLE;CHARSET=UTF-8:Milk=0D=0A=\r\nBread=0D=0A=\r\nK=C3=A4se\r\n"
        "SUMMARY:Shopping " +
        std::to_string(i) + "\r\nCATEGORIES:HOME\r\nEND:VNOTE\r\n";
  }
  return out;
}

std::string Messages() {
  std::string out;
  for (unsigned i = 0; i < kObjects; ++i) {
    out +=
        "BEGIN:VMSG\r\nVERSION:1.1\r\nX-IRMC-STATUS:READ\r\nX-IRMC-TYPE:INET\r\n"
        "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Doe;Jo\r\nEND:VCARD\r\nX-BT-FOLDER:INBOX\r\n"
        "BEGIN:VENV\r\nBEGIN:VBODY\r\nDate: Mon, 5 Jan 2004 10:00:00 +0100\r\n"
        "From: jo@example.org\r\nTo: mira@example.org\r\nSubject: Figures " +
        std::to_string(i) +
        "\r\nContent-Type: text/plain\r\n\r\nDear Mira,\r\n\r\nthe figures are in the second table "
        "of the "
        "report.\r\nPlease look at them before "
        "Monday.\r\n\r\nJo\r\nEND:VBODY\r\nEND:VENV\r\nEND:VMSG\r\n";
  }
  return out;
}

void SetRates(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
  state.counters["objects/s"] = benchmark::Counter(
      static_cast<double>(state.iterations() * kObjects), benchmark::Counter::kIsRate);
}

void BM_Read(benchmark::State& state, std::string (*make)()) {
  const std::string content = make();
  const bench::TemporaryFile input(content);
  for (auto _ : state) {
    if (TAMU_ReadObjects(reinterpret_cast<const TamuWchar*>(input.path().c_str()), nullptr,
                         nullptr) != TAMU_OK) {
      return state.SkipWithError("reading failed");
    }
  }
  SetRates(state, content.size());
}

struct Output {
  File file;
  bool failed = false;
};

uint32_t WriteObject(ObjectKind kind, ObjectRecord* record, TamuResult, void* user) {
  auto* const output = static_cast<Output*>(user);
  if (FORMAT_Write(kind, &output->file, *record) != TAMU_OK) output->failed = true;
  return 0;
}

// What `tamu rewrite` does: the records pass from the reader to the writer one by one.
void BM_Rewrite(benchmark::State& state, std::string (*make)()) {
  const std::string content = make();
  const bench::TemporaryFile input(content);
  const bench::TemporaryFile target("");
  for (auto _ : state) {
    Output output;
    if (FILE_Open(target.path().c_str(), u"w", &output.file) != 0)
      return state.SkipWithError("no output");
    TAMU_ReadObjects(reinterpret_cast<const TamuWchar*>(input.path().c_str()), &WriteObject,
                     &output);
    if (FILE_Close(&output.file, target.path().c_str()) != 0 || output.failed) {
      return state.SkipWithError("writing failed");
    }
  }
  SetRates(state, content.size());
}

BENCHMARK_CAPTURE(BM_Read, events, &Events);
BENCHMARK_CAPTURE(BM_Rewrite, events, &Events);
BENCHMARK_CAPTURE(BM_Read, notes, &Notes);
BENCHMARK_CAPTURE(BM_Rewrite, notes, &Notes);
BENCHMARK_CAPTURE(BM_Read, messages, &Messages);
BENCHMARK_CAPTURE(BM_Rewrite, messages, &Messages);

}  // namespace
}  // namespace tamu
