#include "system/end_request.h"

#include <signal.h>

namespace tamu::tool {
namespace {

constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile sig_atomic_t g_came = 0;

void Note(int /*signal_number*/) { g_came = 1; }

void Replace(void (*before)(int), void (*after)(int), int flags) noexcept {
  for (const int number : kEndingSignals) {
    struct sigaction action = {};
    if (::sigaction(number, nullptr, &action) != 0 || action.sa_handler != before) continue;
    action = {};
    action.sa_handler = after;
    action.sa_flags = flags;
    ::sigaction(number, &action, nullptr);
  }
}

}  // namespace

EndRequest::EndRequest() noexcept {
  g_came = 0;
  // Once: the next one does what it always does.
  Replace(SIG_DFL, &Note, SA_RESTART | static_cast<int>(SA_RESETHAND));
}

EndRequest::~EndRequest() { Replace(&Note, SIG_DFL, 0); }

bool EndRequest::Came() const noexcept { return g_came != 0; }

}  // namespace tamu::tool
