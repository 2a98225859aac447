#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "device/mail/mail_objects.h"
#include "device/mail/no_memory.h"
#include "device/mail/prop_object.h"

namespace tamu::device {
namespace {

using platform::GUID;
using platform::HRESULT;
using platform::IStream;

// More than any mail and less than what a database takes in one value.
constexpr std::uint64_t kMaxSize = 256U * 1024 * 1024;

constexpr std::uint32_t kTypeStream = 2;  // STGTY_STREAM

// The origins of Seek.
constexpr std::uint32_t kSeekSet = 0;
constexpr std::uint32_t kSeekCurrent = 1;
constexpr std::uint32_t kSeekEnd = 2;

class PropertyStream final : public ComObject<PropertyStream, IStream> {
 public:
  PropertyStream(const StreamTarget& target, Bytes bytes, bool writable, bool changed) noexcept
      : target_(target), bytes_(std::move(bytes)), writable_(writable), changed_(changed) {}
  // The end of the last reference: there is nobody left to tell a failure to.
  ~PropertyStream() { static_cast<void>(Store()); }

  [[nodiscard]] bool Implements(const GUID& iid) const noexcept {
    return iid == platform::IID_IStream || iid == platform::IID_ISequentialStream;
  }

  HRESULT TAMU_COM_CALL Read(void* buffer, std::uint32_t size, std::uint32_t* read) override;
  HRESULT TAMU_COM_CALL Write(const void* buffer, std::uint32_t size,
                              std::uint32_t* written) override;
  HRESULT TAMU_COM_CALL Seek(std::int64_t distance, std::uint32_t origin,
                             std::uint64_t* position) override;
  HRESULT TAMU_COM_CALL SetSize(std::uint64_t size) override;
  HRESULT TAMU_COM_CALL Stat(platform::STATSTG* stat, std::uint32_t flags) override;
  HRESULT TAMU_COM_CALL Commit(std::uint32_t) override {
    TAMU_DEVICE_CALL("IStream::Commit");
    return Store();
  }

  HRESULT TAMU_COM_CALL CopyTo(IStream*, std::uint64_t, std::uint64_t* read,
                               std::uint64_t* written) override {
    return Unsupported("IStream::CopyTo", read, written);
  }
  HRESULT TAMU_COM_CALL Revert() override { return Unsupported("IStream::Revert"); }
  HRESULT TAMU_COM_CALL LockRegion(std::uint64_t, std::uint64_t, std::uint32_t) override {
    return Unsupported("IStream::LockRegion");
  }
  HRESULT TAMU_COM_CALL UnlockRegion(std::uint64_t, std::uint64_t, std::uint32_t) override {
    return Unsupported("IStream::UnlockRegion");
  }
  HRESULT TAMU_COM_CALL Clone(IStream** clone) override {
    return Unsupported("IStream::Clone", clone);
  }

 private:
  [[nodiscard]] HRESULT Resize(std::uint64_t size) noexcept;
  [[nodiscard]] HRESULT Store() noexcept;

  const StreamTarget target_;
  Bytes bytes_;
  std::uint64_t position_ = 0;  // may lie behind the end
  const bool writable_;
  bool changed_;
};

HRESULT PropertyStream::Read(void* buffer, std::uint32_t size, std::uint32_t* read) {
  if (read != nullptr) *read = 0;
  TAMU_DEVICE_CALL("IStream::Read");
  if (buffer == nullptr && size != 0) return platform::hr::kInvalidArgument;
  if (position_ >= bytes_.size() || size == 0) return platform::hr::kOk;
  const std::uint64_t left = bytes_.size() - position_;
  const auto taken = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, left));
  std::memcpy(buffer, bytes_.data() + position_, taken);
  position_ += taken;
  if (read != nullptr) *read = taken;
  return platform::hr::kOk;
}

HRESULT PropertyStream::Write(const void* buffer, std::uint32_t size, std::uint32_t* written) {
  if (written != nullptr) *written = 0;
  TAMU_DEVICE_CALL("IStream::Write");
  if (!writable_) return platform::hr::kStreamAccessDenied;
  if (buffer == nullptr && size != 0) return platform::hr::kInvalidArgument;
  if (size == 0) return platform::hr::kOk;
  if (position_ > kMaxSize) return platform::hr::kTooBig;
  const std::uint64_t end = position_ + size;
  if (end > bytes_.size()) {
    if (const HRESULT resized = Resize(end); platform::Failed(resized)) return resized;
  }
  std::memcpy(bytes_.data() + position_, buffer, size);
  position_ = end;
  changed_ = true;
  if (written != nullptr) *written = size;
  return platform::hr::kOk;
}

HRESULT PropertyStream::Seek(std::int64_t distance, std::uint32_t origin, std::uint64_t* position) {
  if (position != nullptr) *position = position_;
  TAMU_DEVICE_CALL("IStream::Seek");
  if (origin > kSeekEnd) return platform::hr::kStreamInvalidFunction;
  const std::uint64_t base = origin == kSeekSet       ? 0
                             : origin == kSeekCurrent ? position_
                                                      : bytes_.size();
  const auto forward = static_cast<std::int64_t>(base);  // positions are below 2^63
  if (distance < -forward || distance > std::numeric_limits<std::int64_t>::max() - forward) {
    return platform::hr::kStreamInvalidFunction;
  }
  position_ = static_cast<std::uint64_t>(forward + distance);
  if (position != nullptr) *position = position_;
  return platform::hr::kOk;
}

HRESULT PropertyStream::SetSize(std::uint64_t size) {
  TAMU_DEVICE_CALL("IStream::SetSize");
  if (!writable_) return platform::hr::kStreamAccessDenied;
  if (const HRESULT resized = Resize(size); platform::Failed(resized)) return resized;
  changed_ = true;
  return platform::hr::kOk;
}

HRESULT PropertyStream::Stat(platform::STATSTG* stat, std::uint32_t) {
  if (stat == nullptr) return platform::hr::kInvalidArgument;
  *stat = {};
  TAMU_DEVICE_CALL("IStream::Stat");
  stat->type = kTypeStream;
  stat->cbSize = bytes_.size();
  stat->grfMode = writable_ ? platform::kStorageReadWrite : platform::kStorageRead;
  return platform::hr::kOk;
}

HRESULT PropertyStream::Resize(std::uint64_t size) noexcept {
  if (size > kMaxSize) return platform::hr::kTooBig;
  return CatchNoMemory([&] {
    bytes_.resize(static_cast<std::size_t>(size));
    return platform::hr::kOk;
  });
}

HRESULT PropertyStream::Store() noexcept {
  if (!changed_) return platform::hr::kOk;
  return CatchNoMemory([&]() -> HRESULT {
    MailProperty property{target_.tag, {}};
    if (KindOfMailType(platform::PropType(target_.tag)) == MailValueKind::kText) {
      std::u16string text((bytes_.size() + 1) / sizeof(char16_t), u'\0');
      if (!bytes_.empty()) std::memcpy(text.data(), bytes_.data(), bytes_.size());
      property.value = std::move(text);
    } else {
      property.value = bytes_;
    }
    const HRESULT result =
        OfMessage(target_.store->SetProperties(target_.id, std::span(&property, 1)));
    if (platform::Succeeded(result)) changed_ = false;
    return result;
  });
}

}  // namespace

HRESULT CreatePropertyStream(const StreamTarget& target, Bytes bytes, bool writable, bool changed,
                             platform::IUnknown** out) noexcept {
  *out = NewObject<PropertyStream>(target, std::move(bytes), writable, changed);
  return *out == nullptr ? platform::hr::kOutOfMemory : platform::hr::kOk;
}

}  // namespace tamu::device
