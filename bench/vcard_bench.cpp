// Reading and writing of vCards, beside the floor: looking for the line feeds of the same bytes.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <vector>

#include "core/file.h"
#include "core/records.h"
#include "formats/vcard_reader.h"
#include "formats/vcard_writer.h"
#include "synthetic_contacts.h"
#include "text/logical_line.h"

namespace tamu {
namespace {

constexpr unsigned kContacts = 10000;

const std::string& Content() {
  static const std::string content = bench::SyntheticContacts(kContacts);
  return content;
}

const std::u16string& InputPath() {
  static const bench::TemporaryFile file(Content());
  return file.path();
}

void SetRates(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
  state.counters["cards/s"] = benchmark::Counter(
      static_cast<double>(state.iterations() * kContacts), benchmark::Counter::kIsRate);
}

void BM_FloorMemchr(benchmark::State& state) {
  const std::string& content = Content();
  for (auto _ : state) {
    std::size_t lines = 0;
    const char* const end = content.data() + content.size();
    for (const char* p = content.data(); p != end; ++lines) {
      const void* const found = std::memchr(p, '\n', static_cast<std::size_t>(end - p));
      if (found == nullptr) break;
      p = static_cast<const char*>(found) + 1;
    }
    benchmark::DoNotOptimize(lines);
  }
  SetRates(state, content.size());
}
BENCHMARK(BM_FloorMemchr);

void BM_LogicalLines(benchmark::State& state) {
  for (auto _ : state) {
    File file;
    if (FILE_Open(InputPath().c_str(), u"rb", &file) != 0) return state.SkipWithError("no input");
    while (!file.AtEnd()) benchmark::DoNotOptimize(FileLine(&file));
  }
  SetRates(state, Content().size());
}
BENCHMARK(BM_LogicalLines);

void BM_ReadVcards(benchmark::State& state) {
  for (auto _ : state) {
    if (TAMU_ReadObjects(reinterpret_cast<const TamuWchar*>(InputPath().c_str()), nullptr,
                         nullptr) != TAMU_OK) {
      return state.SkipWithError("reading failed");
    }
  }
  SetRates(state, Content().size());
}
BENCHMARK(BM_ReadVcards);

// Records that are kept while writing is measured: few enough to stay near, as the one record does
// that objects pass through when they are copied.
constexpr unsigned kKeptRecords = 250;

// Takes the first records over, so that writing can be measured alone.
uint32_t KeepRecord(ObjectKind, ObjectRecord* record, TamuResult, void* user) {
  auto* const records = static_cast<std::vector<ObjectRecord>*>(user);
  if (records->size() == kKeptRecords) return 0;
  records->push_back(*record);
  std::memset(record->bytes, 0, sizeof record->bytes);
  return 0;
}

void BM_WriteVcards(benchmark::State& state) {
  std::vector<ObjectRecord> records;
  records.reserve(kKeptRecords);
  TAMU_ReadObjects(reinterpret_cast<const TamuWchar*>(InputPath().c_str()), &KeepRecord, &records);
  const bench::TemporaryFile output("");
  for (auto _ : state) {
    File file;
    if (FILE_Open(output.path().c_str(), u"w", &file) != 0) return state.SkipWithError("no output");
    for (unsigned i = 0; i < kContacts; ++i) {
      benchmark::DoNotOptimize(VCARD_Write(&file, records[i % kKeptRecords], true));
    }
    if (FILE_Close(&file, output.path().c_str()) != 0) return state.SkipWithError("writing failed");
  }
  SetRates(state, Content().size());
  for (ObjectRecord& record : records) RECORD_Free(KIND_CONTACT, &record);
}
BENCHMARK(BM_WriteVcards);

}  // namespace
}  // namespace tamu
