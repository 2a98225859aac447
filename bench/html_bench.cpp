// HTML bodies as text, beside the floor: looking for the line feeds of the same bytes.
#include <benchmark/benchmark.h>

#include <cstring>
#include <iterator>
#include <string>

#include "mailstore/html_entities.h"
#include "mailstore/html_text.h"

namespace tamu {
namespace {

// A message as mail programs write them: nested tables, styles, entities, indented lines.
std::u16string Page(std::size_t paragraphs) {
  std::u16string page =
      u"<html><head><title>Offer</title>\r\n<style>p { margin: 0 }</style></head>\r\n<body>\r\n";
  for (std::size_t i = 0; i < paragraphs; ++i) {
    page +=
        u"  <table width=\"100%\"><tr><td class=\"text\" style=\"color: #333333\">\r\n"
        u"    <p>Dear Ms M&uuml;ller,<br>\r\n"
        u"    thank you for your order of the 31st of December. We will deliver the 12 items that "
        u"you asked for within a week,\r\n"
        u"    &quot;free of charge&quot;, to the address you gave us &#8211; at &euro;&nbsp;25 "
        u"each. "
        u"Questions? <a href=\"https://www.example.com/?a=1\">Ask us</a>.</p>\r\n"
        u"  </td></tr></table>\r\n";
  }
  return page + u"</body></html>\r\n";
}

const std::u16string& Input() {
  static const std::u16string page = Page(2000);
  return page;
}

void SetBytes(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() *
                          static_cast<std::int64_t>(Input().size() * sizeof(char16_t)));
}

void BM_HtmlFloorMemchr(benchmark::State& state) {
  const char* const begin = reinterpret_cast<const char*>(Input().data());
  const char* const end = begin + Input().size() * sizeof(char16_t);
  for (auto _ : state) {
    std::size_t lines = 0;
    for (const char* p = begin; p < end; ++lines) {
      const void* const found = std::memchr(p, '\n', static_cast<std::size_t>(end - p));
      if (found == nullptr) break;
      p = static_cast<const char*>(found) + 1;
    }
    benchmark::DoNotOptimize(lines);
  }
  SetBytes(state);
}
BENCHMARK(BM_HtmlFloorMemchr);

void BM_HtmlToText(benchmark::State& state) {
  for (auto _ : state) {
    std::u16string text;
    HTML_ToText(Input().c_str(), &text);
    benchmark::DoNotOptimize(text.data());
  }
  SetBytes(state);
}
BENCHMARK(BM_HtmlToText);

void BM_HtmlEntities(benchmark::State& state) {
  constexpr const char16_t* kNames[] = {u"amp",   u"nbsp",   u"Eacute", u"thetasym",
                                        u"#8211", u"#x20AC", u"unknown"};
  for (auto _ : state) {
    for (const char16_t* name : kNames) benchmark::DoNotOptimize(HTML_DecodeEntity(name));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(std::size(kNames)));
}
BENCHMARK(BM_HtmlEntities);

}  // namespace
}  // namespace tamu
