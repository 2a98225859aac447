#include "formats/shared_record.h"

namespace tamu {
namespace {

constinit ObjectRecord g_record{};
constinit std::uint32_t g_begin_line = 0;

}  // namespace

ObjectRecord* SHARED_Record() noexcept { return &g_record; }

std::uint32_t SHARED_BeginLine() noexcept { return g_begin_line; }

void SHARED_BeginObject(std::uint32_t begin_line) noexcept { g_begin_line = begin_line; }

}  // namespace tamu
