// system/end_request.h - the user's or the system's wish that the program ends (Ctrl-C, SIGTERM, a
// hangup), for work that has to be completed first.
#ifndef TAMU_TOOLS_SYSTEM_END_REQUEST_H_
#define TAMU_TOOLS_SYSTEM_END_REQUEST_H_

namespace tamu::tool {

// While one lives, the first such signal is only noted; the same one again ends the program at once.
// One at a time. A signal that is ignored (nohup) stays so.
class EndRequest {
 public:
  EndRequest() noexcept;
  ~EndRequest();
  EndRequest(const EndRequest&) = delete;
  EndRequest& operator=(const EndRequest&) = delete;

  [[nodiscard]] bool Came() const noexcept;
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_SYSTEM_END_REQUEST_H_
