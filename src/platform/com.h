// platform/com.h - the platform's binary interfaces: results, identifiers, the two base interfaces,
// and the one function that makes objects.
//   Interfaces are pure abstract classes whose methods stand in the platform's own virtual-table
//   order, so that the same code drives a real device's objects: no virtual destructor, no
//   overloads, the platform's calling convention on every method, 32 bits where the platform says
//   long.
//   Ownership  an interface pointer that a call gives away carries one reference; com_ptr.h holds
//              it. Counted strings that a call gives away are freed by the caller (bstr.h).
//   Errors     a 32-bit result, negative for failure.
#ifndef TAMU_PLATFORM_COM_H_
#define TAMU_PLATFORM_COM_H_

#include <array>
#include <cstdint>

#include "platform/service.h"

#if defined(_WIN32) && !defined(_WIN64)
#define TAMU_COM_CALL __stdcall
#else
#define TAMU_COM_CALL
#endif

// A method of an interface, as it is declared there.
#define TAMU_COM_METHOD virtual ::tamu::platform::HRESULT TAMU_COM_CALL

namespace tamu::platform {

using HRESULT = std::int32_t;
using BSTR = char16_t*;  // counted, see bstr.h; as an argument any terminated text is taken
using VARIANT_BOOL = std::int16_t;  // kVariantTrue or 0; every nonzero argument counts as true
using DATE = double;                // days since 30 December 1899, local time

inline constexpr VARIANT_BOOL kVariantTrue = -1;
inline constexpr VARIANT_BOOL kVariantFalse = 0;

// The platform's results (the mail store's own are in cemapi.h, the object model's in poom.h).
namespace hr {
inline constexpr HRESULT kOk = 0;
inline constexpr HRESULT kFalse = 1;
inline constexpr HRESULT kNotImplemented = static_cast<HRESULT>(0x80004001U);
inline constexpr HRESULT kNoInterface = static_cast<HRESULT>(0x80004002U);
inline constexpr HRESULT kPointer = static_cast<HRESULT>(0x80004003U);
inline constexpr HRESULT kFail = static_cast<HRESULT>(0x80004005U);
inline constexpr HRESULT kUnexpected = static_cast<HRESULT>(0x8000FFFFU);
inline constexpr HRESULT kNoAggregation = static_cast<HRESULT>(0x80040110U);
inline constexpr HRESULT kClassNotRegistered = static_cast<HRESULT>(0x80040154U);
inline constexpr HRESULT kAccessDenied = static_cast<HRESULT>(0x80070005U);
inline constexpr HRESULT kOutOfMemory = static_cast<HRESULT>(0x8007000EU);
inline constexpr HRESULT kWriteProtected = static_cast<HRESULT>(0x80070013U);
inline constexpr HRESULT kLocked = static_cast<HRESULT>(0x80070021U);
inline constexpr HRESULT kInvalidArgument = static_cast<HRESULT>(0x80070057U);
inline constexpr HRESULT kDiskFull = static_cast<HRESULT>(0x80070070U);
inline constexpr HRESULT kItemNotFound = static_cast<HRESULT>(0x80070490U);
inline constexpr HRESULT kCorrupt = static_cast<HRESULT>(0x80070570U);
inline constexpr HRESULT kNewerVersion = static_cast<HRESULT>(0x8007047EU);
}  // namespace hr

[[nodiscard]] constexpr bool Failed(HRESULT result) noexcept { return result < 0; }
[[nodiscard]] constexpr bool Succeeded(HRESULT result) noexcept { return result >= 0; }

struct GUID {
  std::uint32_t data1;
  std::uint16_t data2;
  std::uint16_t data3;
  std::array<std::uint8_t, 8> data4;

  friend constexpr bool operator==(const GUID&, const GUID&) = default;
};
static_assert(sizeof(GUID) == 16 && alignof(GUID) == 4);

inline constexpr GUID IID_IUnknown{0x00000000, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr GUID IID_IDispatch{0x00020400, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

class IUnknown {
 public:
  // Gives another interface of the same object, with one reference; kNoInterface and null for one
  // that the object does not have.
  TAMU_COM_METHOD QueryInterface(const GUID& iid, void** object) = 0;
  // Both return the count of references that are left.
  virtual std::uint32_t TAMU_COM_CALL AddRef() = 0;
  virtual std::uint32_t TAMU_COM_CALL Release() = 0;

 protected:
  ~IUnknown() = default;
};

// Late binding: four slots that keep the place of the platform's; the library never calls them.
class IDispatch : public IUnknown {
 public:
  TAMU_COM_METHOD GetTypeInfoCount(std::uint32_t* count) = 0;
  TAMU_COM_METHOD GetTypeInfo(std::uint32_t index, std::uint32_t locale, void** type_info) = 0;
  TAMU_COM_METHOD GetIDsOfNames(const GUID& iid, BSTR* names, std::uint32_t count,
                                std::uint32_t locale, std::int32_t* ids) = 0;
  TAMU_COM_METHOD Invoke(std::int32_t id, const GUID& iid, std::uint32_t locale,
                         std::uint16_t flags, void* parameters, void* result, void* exception,
                         std::uint32_t* argument_error) = 0;

 protected:
  ~IDispatch() = default;
};

inline constexpr std::uint32_t kInProcessServer = 1;  // CLSCTX_INPROC_SERVER

// Makes an object of a class. kClassNotRegistered when nothing provides the class, kNoInterface
// when the object lacks the interface; `*object` is null then.
extern Service<HRESULT(const GUID& class_id, IUnknown* outer, std::uint32_t context,
                       const GUID& iid, void** object)>
    CoCreateInstance;

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_COM_H_
