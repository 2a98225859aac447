// platform/cemapi.h - the device's messaging store, as interfaces and structures.
//   A session has a table of message stores; a store opens its folders by entry id; a folder has a
//   contents table, creates messages and opens them. A message lives from `CreateMessage` on: what
//   is set takes effect at once, there is no saving.
//   Methods stand in the platform's virtual-table order (tests pin the slots); structures have its
//   layout on 32 bits and its natural one on 64. Methods that the platform does not support keep
//   their slots and answer kNoSupport.
//   Units      times are UTC file times; wide text is UTF-16, body streams are its bytes in
//              little-endian order.
//   Ownership  what a call gives away in one block is freed as a whole with `MAPIFreeBuffer`, row
//              sets with `FreeProws`; entry ids and texts inside live as long as their block.
//   Errors     results of com.h and of namespace hr below. kErrorsReturned is a success: cells that
//              could not be given have type kTypeError.
#ifndef TAMU_PLATFORM_CEMAPI_H_
#define TAMU_PLATFORM_CEMAPI_H_

#include <cstddef>
#include <cstdint>

#include "platform/com.h"
#include "platform/time.h"

namespace tamu::platform {

namespace hr {
inline constexpr HRESULT kErrorsReturned = 0x00040380;  // MAPI_W_ERRORS_RETURNED
inline constexpr HRESULT kNoSupport = static_cast<HRESULT>(0x80040102U);
inline constexpr HRESULT kInvalidEntryId = static_cast<HRESULT>(0x80040107U);
inline constexpr HRESULT kObjectDeleted = static_cast<HRESULT>(0x8004010AU);
inline constexpr HRESULT kNotFound = static_cast<HRESULT>(0x8004010FU);
inline constexpr HRESULT kLogonFailed = static_cast<HRESULT>(0x80040111U);
inline constexpr HRESULT kComputed = static_cast<HRESULT>(0x8004011AU);
inline constexpr HRESULT kUnknownEntryId = static_cast<HRESULT>(0x80040201U);
inline constexpr HRESULT kInvalidType = static_cast<HRESULT>(0x80040302U);
inline constexpr HRESULT kTooBig = static_cast<HRESULT>(0x80040305U);
inline constexpr HRESULT kCorruptStore = static_cast<HRESULT>(0x80040600U);
inline constexpr HRESULT kNotInitialized = static_cast<HRESULT>(0x80040605U);
inline constexpr HRESULT kNoRecipients = static_cast<HRESULT>(0x80040607U);
inline constexpr HRESULT kStreamInvalidFunction = static_cast<HRESULT>(0x80030001U);
inline constexpr HRESULT kStreamAccessDenied = static_cast<HRESULT>(0x80030005U);
}  // namespace hr

// --- Properties -------------------------------------------------------------

// A property tag is its id in the high word and its type in the low one.
inline constexpr std::uint32_t kTypeUnspecified = 0x0000;
inline constexpr std::uint32_t kTypeNull = 0x0001;
inline constexpr std::uint32_t kTypeShort = 0x0002;
inline constexpr std::uint32_t kTypeLong = 0x0003;
inline constexpr std::uint32_t kTypeFloat = 0x0004;
inline constexpr std::uint32_t kTypeDouble = 0x0005;
inline constexpr std::uint32_t kTypeCurrency = 0x0006;
inline constexpr std::uint32_t kTypeAppTime = 0x0007;
inline constexpr std::uint32_t kTypeError = 0x000A;
inline constexpr std::uint32_t kTypeBoolean = 0x000B;
inline constexpr std::uint32_t kTypeObject = 0x000D;
inline constexpr std::uint32_t kTypeInt64 = 0x0014;
inline constexpr std::uint32_t kTypeString8 = 0x001E;
inline constexpr std::uint32_t kTypeUnicode = 0x001F;
inline constexpr std::uint32_t kTypeSysTime = 0x0040;
inline constexpr std::uint32_t kTypeClsid = 0x0048;
inline constexpr std::uint32_t kTypeBinary = 0x0102;

[[nodiscard]] constexpr std::uint32_t PropType(std::uint32_t tag) noexcept { return tag & 0xFFFF; }
[[nodiscard]] constexpr std::uint32_t PropId(std::uint32_t tag) noexcept { return tag >> 16; }
[[nodiscard]] constexpr std::uint32_t PropTag(std::uint32_t type, std::uint32_t id) noexcept {
  return id << 16 | type;
}

inline constexpr std::uint32_t PR_MESSAGE_CLASS = 0x001A001F;
inline constexpr std::uint32_t PR_SUBJECT = 0x0037001F;
inline constexpr std::uint32_t PR_RECIPIENT_TYPE = 0x0C150003;
inline constexpr std::uint32_t PR_SENDER_NAME = 0x0C1A001F;
inline constexpr std::uint32_t PR_SENDER_EMAIL_ADDRESS = 0x0C1F001F;
inline constexpr std::uint32_t PR_MESSAGE_DELIVERY_TIME = 0x0E060040;
inline constexpr std::uint32_t PR_MESSAGE_FLAGS = 0x0E070003;
inline constexpr std::uint32_t PR_MESSAGE_SIZE = 0x0E080003;
inline constexpr std::uint32_t PR_PARENT_ENTRYID = 0x0E090102;
inline constexpr std::uint32_t PR_OBJECT_TYPE = 0x0FFE0003;
inline constexpr std::uint32_t PR_ENTRYID = 0x0FFF0102;
inline constexpr std::uint32_t PR_BODY = 0x1000001F;
inline constexpr std::uint32_t PR_ROWID = 0x30000003;
inline constexpr std::uint32_t PR_DISPLAY_NAME = 0x3001001F;
inline constexpr std::uint32_t PR_ADDRTYPE = 0x3002001F;
inline constexpr std::uint32_t PR_EMAIL_ADDRESS = 0x3003001F;
inline constexpr std::uint32_t PR_PROVIDER_DISPLAY = 0x3006001F;
inline constexpr std::uint32_t PR_DEFAULT_STORE = 0x3400000B;
inline constexpr std::uint32_t PR_IPM_OUTBOX_ENTRYID = 0x35E20102;
inline constexpr std::uint32_t PR_IPM_SENTMAIL_ENTRYID = 0x35E40102;
inline constexpr std::uint32_t PR_CONTENT_COUNT = 0x36020003;

// Bits of PR_MESSAGE_FLAGS.
inline constexpr std::int32_t kMessageRead = 0x01;
inline constexpr std::int32_t kMessageFromMe = 0x20;

// Values of PR_RECIPIENT_TYPE.
inline constexpr std::int32_t kRecipientTo = 1;
inline constexpr std::int32_t kRecipientCc = 2;

// Kinds of objects that an entry id opens.
inline constexpr std::uint32_t kObjectStore = 1;
inline constexpr std::uint32_t kObjectFolder = 3;
inline constexpr std::uint32_t kObjectMessage = 5;

// --- Flags ------------------------------------------------------------------

inline constexpr std::uint32_t kMapiUnicode = 0x80000000;
inline constexpr std::uint32_t kMapiNoMail = 0x8000;
inline constexpr std::uint32_t kMapiUseDefault = 0x40;
inline constexpr std::uint32_t kMapiExtended = 0x20;
inline constexpr std::uint32_t kMapiBestAccess = 0x10;
inline constexpr std::uint32_t kMapiModify = 1;
inline constexpr std::uint32_t kMapiCreate = 2;
inline constexpr std::uint32_t kStoreNoDialog = 1;  // MDB_NO_DIALOG
inline constexpr std::uint32_t kStoreWrite = 4;     // MDB_WRITE
inline constexpr std::uint32_t kBookmarkBeginning = 0;
inline constexpr std::uint32_t kRecipientsAdd = 2;     // MODRECIP_ADD
inline constexpr std::uint32_t kStorageRead = 0;       // STGM_READ
inline constexpr std::uint32_t kStorageWrite = 1;      // STGM_WRITE
inline constexpr std::uint32_t kStorageReadWrite = 2;  // STGM_READWRITE
inline constexpr std::uint32_t kStorageCreate = 0x1000;

// --- Structures -------------------------------------------------------------

struct ENTRYID {
  std::uint8_t abFlags[4];
  std::uint8_t ab[1];  // as many as the entry id's length says
};

struct SBinary {
  std::uint32_t cb;
  std::uint8_t* lpb;
};

struct SPropTagArray {
  std::uint32_t cValues;
  std::uint32_t aulPropTag[1];  // cValues of them
};

// A tag array of N tags, laid out as SPropTagArray.
template <std::size_t N>
struct SizedPropTagArray {
  std::uint32_t cValues = N;
  std::uint32_t aulPropTag[N];

  [[nodiscard]] SPropTagArray* get() noexcept {
    return static_cast<SPropTagArray*>(static_cast<void*>(this));
  }
};

struct SPropValue {
  std::uint32_t ulPropTag;
  std::uint32_t dwAlignPad;
  union alignas(8) Contents {
    std::int16_t i;
    std::int32_t l;
    std::uint32_t ul;
    float flt;
    double dbl;
    std::uint16_t b;
    double at;
    std::int64_t li;
    FILETIME ft;
    char* lpszA;
    char16_t* lpszW;
    SBinary bin;
    GUID* lpguid;
    HRESULT err;
  } Value;
};
static_assert(offsetof(SPropValue, Value) == 8);
static_assert(sizeof(SPropValue) == (sizeof(void*) == 4 ? 16 : 24) && alignof(SPropValue) == 8);

struct SRow {
  std::uint32_t ulAdrEntryPad;
  std::uint32_t cValues;
  SPropValue* lpProps;
};

struct SRowSet {
  std::uint32_t cRows;
  SRow aRow[1];  // cRows of them
};

struct ADRENTRY {
  std::uint32_t ulReserved1;
  std::uint32_t cValues;
  SPropValue* rgPropVals;
};

struct ADRLIST {
  std::uint32_t cEntries;
  ADRENTRY aEntries[1];  // cEntries of them
};
static_assert(sizeof(SRow) == sizeof(ADRENTRY) && sizeof(SRowSet) == sizeof(ADRLIST));
static_assert(sizeof(void*) != 4 || (sizeof(ADRLIST) == 16 && sizeof(ADRENTRY) == 12));

struct MAPIERROR {
  std::uint32_t ulVersion;
  char16_t* lpszError;
  char16_t* lpszComponent;
  std::uint32_t ulLowLevelError;
  std::uint32_t ulContext;
};

struct SPropProblem {
  std::uint32_t ulIndex;
  std::uint32_t ulPropTag;
  HRESULT scode;
};

struct SPropProblemArray {
  std::uint32_t cProblem;
  SPropProblem aProblem[1];  // cProblem of them
};
static_assert(sizeof(SPropProblem) == 12 && sizeof(SPropProblemArray) == 16);

struct SSortOrderSet;
struct SRestriction;

struct ENTRYLIST {
  std::uint32_t cValues;
  SBinary* lpbin;
};

// What IStream::Stat tells; the callers look at cbSize alone.
struct STATSTG {
  char16_t* pwcsName;
  std::uint32_t type;
  std::uint64_t cbSize;
  FILETIME mtime;
  FILETIME ctime;
  FILETIME atime;
  std::uint32_t grfMode;
  std::uint32_t grfLocksSupported;
  GUID clsid;
  std::uint32_t grfStateBits;
  std::uint32_t reserved;
};

// --- Interfaces -------------------------------------------------------------

namespace cemapi_detail {
constexpr GUID Id(std::uint32_t data1) noexcept {
  return {data1, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
}
}  // namespace cemapi_detail

inline constexpr GUID IID_IStream = cemapi_detail::Id(0x0000000C);
inline constexpr GUID IID_ISequentialStream{
    0x0C733A30, 0x2A1C, 0x11CE, {0xAD, 0xE5, 0x00, 0xAA, 0x00, 0x44, 0x77, 0x3D}};
inline constexpr GUID IID_IMAPISession = cemapi_detail::Id(0x00020300);
inline constexpr GUID IID_IMAPITable = cemapi_detail::Id(0x00020301);
inline constexpr GUID IID_IMAPIProp = cemapi_detail::Id(0x00020303);
inline constexpr GUID IID_IMsgStore = cemapi_detail::Id(0x00020306);
inline constexpr GUID IID_IMessage = cemapi_detail::Id(0x00020307);
inline constexpr GUID IID_IMAPIContainer = cemapi_detail::Id(0x0002030B);
inline constexpr GUID IID_IMAPIFolder = cemapi_detail::Id(0x0002030C);

class ISequentialStream : public IUnknown {
 public:
  // Fills the buffer unless the stream ends; `read` (may be null) says how far.
  TAMU_COM_METHOD Read(void* buffer, std::uint32_t size, std::uint32_t* read) = 0;
  TAMU_COM_METHOD Write(const void* buffer, std::uint32_t size, std::uint32_t* written) = 0;

 protected:
  ~ISequentialStream() = default;
};

// The bytes of one property. What was written is kept when the stream is released, committed or
// not.
class IStream : public ISequentialStream {
 public:
  TAMU_COM_METHOD Seek(std::int64_t distance, std::uint32_t origin, std::uint64_t* position) = 0;
  TAMU_COM_METHOD SetSize(std::uint64_t size) = 0;
  TAMU_COM_METHOD CopyTo(IStream* target, std::uint64_t size, std::uint64_t* read,
                         std::uint64_t* written) = 0;
  TAMU_COM_METHOD Commit(std::uint32_t flags) = 0;
  TAMU_COM_METHOD Revert() = 0;
  TAMU_COM_METHOD LockRegion(std::uint64_t offset, std::uint64_t size, std::uint32_t type) = 0;
  TAMU_COM_METHOD UnlockRegion(std::uint64_t offset, std::uint64_t size, std::uint32_t type) = 0;
  TAMU_COM_METHOD Stat(STATSTG* stat, std::uint32_t flags) = 0;
  TAMU_COM_METHOD Clone(IStream** clone) = 0;

 protected:
  ~IStream() = default;
};

class IMAPIProp : public IUnknown {
 public:
  // The extended error of a result; `*error` may stay null.
  TAMU_COM_METHOD GetLastError(HRESULT result, std::uint32_t flags, MAPIERROR** error) = 0;
  TAMU_COM_METHOD SaveChanges(std::uint32_t flags) = 0;
  // The values in the order of the tags, one block.
  TAMU_COM_METHOD GetProps(SPropTagArray* tags, std::uint32_t flags, std::uint32_t* count,
                           SPropValue** values) = 0;
  TAMU_COM_METHOD GetPropList(std::uint32_t flags, SPropTagArray** tags) = 0;
  // A property as a stream, whatever interface is asked for.
  TAMU_COM_METHOD OpenProperty(std::uint32_t tag, const GUID* iid, std::uint32_t options,
                               std::uint32_t flags, IUnknown** stream) = 0;
  // `problems` may be null; what it receives is freed by the caller.
  TAMU_COM_METHOD SetProps(std::uint32_t count, SPropValue* values,
                           SPropProblemArray** problems) = 0;
  TAMU_COM_METHOD DeleteProps(SPropTagArray* tags, SPropProblemArray** problems) = 0;
  TAMU_COM_METHOD CopyTo(std::uint32_t exclude_count, const GUID* excludes,
                         SPropTagArray* exclude_tags, std::uintptr_t ui, void* progress,
                         const GUID* iid, void* target, std::uint32_t flags,
                         SPropProblemArray** problems) = 0;
  TAMU_COM_METHOD CopyProps(SPropTagArray* tags, std::uintptr_t ui, void* progress, const GUID* iid,
                            void* target, std::uint32_t flags, SPropProblemArray** problems) = 0;
  TAMU_COM_METHOD GetNamesFromIDs(SPropTagArray** tags, GUID* set, std::uint32_t flags,
                                  std::uint32_t* count, void*** names) = 0;
  TAMU_COM_METHOD GetIDsFromNames(std::uint32_t count, void** names, std::uint32_t flags,
                                  SPropTagArray** tags) = 0;

 protected:
  ~IMAPIProp() = default;
};

class IMAPITable : public IUnknown {
 public:
  TAMU_COM_METHOD GetLastError(HRESULT result, std::uint32_t flags, MAPIERROR** error) = 0;
  TAMU_COM_METHOD Advise(std::uint32_t events, void* sink, std::uint32_t* connection) = 0;
  TAMU_COM_METHOD Unadvise(std::uint32_t connection) = 0;
  TAMU_COM_METHOD GetStatus(std::uint32_t* status, std::uint32_t* type) = 0;
  TAMU_COM_METHOD SetColumns(SPropTagArray* tags, std::uint32_t flags) = 0;
  TAMU_COM_METHOD QueryColumns(std::uint32_t flags, SPropTagArray** tags) = 0;
  TAMU_COM_METHOD GetRowCount(std::uint32_t flags, std::uint32_t* count) = 0;
  TAMU_COM_METHOD SeekRow(std::uint32_t bookmark, std::int32_t rows, std::int32_t* sought) = 0;
  TAMU_COM_METHOD SeekRowApprox(std::uint32_t numerator, std::uint32_t denominator) = 0;
  TAMU_COM_METHOD QueryPosition(std::uint32_t* row, std::uint32_t* numerator,
                                std::uint32_t* denominator) = 0;
  TAMU_COM_METHOD FindRow(SRestriction* restriction, std::uint32_t bookmark,
                          std::uint32_t flags) = 0;
  TAMU_COM_METHOD Restrict(SRestriction* restriction, std::uint32_t flags) = 0;
  TAMU_COM_METHOD CreateBookmark(std::uint32_t* bookmark) = 0;
  TAMU_COM_METHOD FreeBookmark(std::uint32_t bookmark) = 0;
  TAMU_COM_METHOD SortTable(SSortOrderSet* order, std::uint32_t flags) = 0;
  TAMU_COM_METHOD QuerySortOrder(SSortOrderSet** order) = 0;
  // At most `rows` rows from the position on, which moves behind them; none at the end.
  TAMU_COM_METHOD QueryRows(std::int32_t rows, std::uint32_t flags, SRowSet** out) = 0;
  TAMU_COM_METHOD Abort() = 0;
  TAMU_COM_METHOD ExpandRow(std::uint32_t size, std::uint8_t* key, std::uint32_t rows,
                            std::uint32_t flags, SRowSet** out, std::uint32_t* more) = 0;
  TAMU_COM_METHOD CollapseRow(std::uint32_t size, std::uint8_t* key, std::uint32_t flags,
                              std::uint32_t* count) = 0;
  TAMU_COM_METHOD WaitForCompletion(std::uint32_t flags, std::uint32_t timeout,
                                    std::uint32_t* status) = 0;
  TAMU_COM_METHOD GetCollapseState(std::uint32_t flags, std::uint32_t key_size, std::uint8_t* key,
                                   std::uint32_t* size, std::uint8_t** state) = 0;
  TAMU_COM_METHOD SetCollapseState(std::uint32_t flags, std::uint32_t size, std::uint8_t* state,
                                   std::uint32_t* bookmark) = 0;

 protected:
  ~IMAPITable() = default;
};

class IMsgStore : public IMAPIProp {
 public:
  TAMU_COM_METHOD Advise(std::uint32_t size, ENTRYID* entry_id, std::uint32_t events, void* sink,
                         std::uint32_t* connection) = 0;
  TAMU_COM_METHOD Unadvise(std::uint32_t connection) = 0;
  TAMU_COM_METHOD CompareEntryIDs(std::uint32_t size1, ENTRYID* id1, std::uint32_t size2,
                                  ENTRYID* id2, std::uint32_t flags, std::uint32_t* result) = 0;
  // `iid` may be null for the object's own interface; `type` (may be null) receives its kind.
  TAMU_COM_METHOD OpenEntry(std::uint32_t size, ENTRYID* entry_id, const GUID* iid,
                            std::uint32_t flags, std::uint32_t* type, IUnknown** object) = 0;
  TAMU_COM_METHOD SetReceiveFolder(char16_t* message_class, std::uint32_t flags, std::uint32_t size,
                                   ENTRYID* entry_id) = 0;
  // The inbox's entry id, freed with MAPIFreeBuffer; the class has to be null.
  TAMU_COM_METHOD GetReceiveFolder(char16_t* message_class, std::uint32_t flags,
                                   std::uint32_t* size, ENTRYID** entry_id,
                                   char16_t** explicit_class) = 0;
  TAMU_COM_METHOD GetReceiveFolderTable(std::uint32_t flags, IMAPITable** table) = 0;
  TAMU_COM_METHOD StoreLogoff(std::uint32_t* flags) = 0;
  TAMU_COM_METHOD AbortSubmit(std::uint32_t size, ENTRYID* entry_id, std::uint32_t flags) = 0;
  TAMU_COM_METHOD GetOutgoingQueue(std::uint32_t flags, IMAPITable** table) = 0;
  TAMU_COM_METHOD SetLockState(void* message, std::uint32_t state) = 0;
  TAMU_COM_METHOD FinishedMsg(std::uint32_t flags, std::uint32_t size, ENTRYID* entry_id) = 0;
  TAMU_COM_METHOD NotifyNewMail(void* notification) = 0;

 protected:
  ~IMsgStore() = default;
};

class IMAPIContainer : public IMAPIProp {
 public:
  TAMU_COM_METHOD GetContentsTable(std::uint32_t flags, IMAPITable** table) = 0;
  TAMU_COM_METHOD GetHierarchyTable(std::uint32_t flags, IMAPITable** table) = 0;
  TAMU_COM_METHOD OpenEntry(std::uint32_t size, ENTRYID* entry_id, const GUID* iid,
                            std::uint32_t flags, std::uint32_t* type, IUnknown** object) = 0;
  TAMU_COM_METHOD SetSearchCriteria(SRestriction* restriction, ENTRYLIST* containers,
                                    std::uint32_t flags) = 0;
  TAMU_COM_METHOD GetSearchCriteria(std::uint32_t flags, SRestriction** restriction,
                                    ENTRYLIST** containers, std::uint32_t* state) = 0;

 protected:
  ~IMAPIContainer() = default;
};

class IMessage : public IMAPIProp {
 public:
  TAMU_COM_METHOD GetAttachmentTable(std::uint32_t flags, IMAPITable** table) = 0;
  TAMU_COM_METHOD OpenAttach(std::uint32_t number, const GUID* iid, std::uint32_t flags,
                             IUnknown** attachment) = 0;
  TAMU_COM_METHOD CreateAttach(const GUID* iid, std::uint32_t flags, std::uint32_t* number,
                               IUnknown** attachment) = 0;
  TAMU_COM_METHOD DeleteAttach(std::uint32_t number, std::uintptr_t ui, void* progress,
                               std::uint32_t flags) = 0;
  // Rows of PR_ROWID, PR_DISPLAY_NAME, PR_EMAIL_ADDRESS, PR_ADDRTYPE, PR_RECIPIENT_TYPE;
  // kNoRecipients when there are none.
  TAMU_COM_METHOD GetRecipientTable(std::uint32_t flags, IMAPITable** table) = 0;
  // With kRecipientsAdd the rows are added behind those that are there.
  TAMU_COM_METHOD ModifyRecipients(std::uint32_t flags, ADRLIST* recipients) = 0;
  TAMU_COM_METHOD SubmitMessage(std::uint32_t flags) = 0;
  TAMU_COM_METHOD SetReadFlag(std::uint32_t flags) = 0;

 protected:
  ~IMessage() = default;
};

class IMAPIFolder : public IMAPIContainer {
 public:
  // `iid` may be null. The message is in the folder, with its entry id, from this call on.
  TAMU_COM_METHOD CreateMessage(const GUID* iid, std::uint32_t flags, IMessage** message) = 0;
  TAMU_COM_METHOD CopyMessages(ENTRYLIST* messages, const GUID* iid, void* target,
                               std::uintptr_t ui, void* progress, std::uint32_t flags) = 0;
  TAMU_COM_METHOD DeleteMessages(ENTRYLIST* messages, std::uintptr_t ui, void* progress,
                                 std::uint32_t flags) = 0;
  TAMU_COM_METHOD CreateFolder(std::uint32_t type, char16_t* name, char16_t* comment,
                               const GUID* iid, std::uint32_t flags, IMAPIFolder** folder) = 0;
  TAMU_COM_METHOD CopyFolder(std::uint32_t size, ENTRYID* entry_id, const GUID* iid, void* target,
                             char16_t* name, std::uintptr_t ui, void* progress,
                             std::uint32_t flags) = 0;
  TAMU_COM_METHOD DeleteFolder(std::uint32_t size, ENTRYID* entry_id, std::uintptr_t ui,
                               void* progress, std::uint32_t flags) = 0;
  TAMU_COM_METHOD SetReadFlags(ENTRYLIST* messages, std::uintptr_t ui, void* progress,
                               std::uint32_t flags) = 0;
  TAMU_COM_METHOD GetMessageStatus(std::uint32_t size, ENTRYID* entry_id, std::uint32_t flags,
                                   std::uint32_t* status) = 0;
  TAMU_COM_METHOD SetMessageStatus(std::uint32_t size, ENTRYID* entry_id, std::uint32_t status,
                                   std::uint32_t mask, std::uint32_t* old_status) = 0;
  TAMU_COM_METHOD SaveContentsSort(SSortOrderSet* order, std::uint32_t flags) = 0;
  TAMU_COM_METHOD EmptyFolder(std::uintptr_t ui, void* progress, std::uint32_t flags) = 0;

 protected:
  ~IMAPIFolder() = default;
};

class IMAPISession : public IUnknown {
 public:
  TAMU_COM_METHOD GetLastError(HRESULT result, std::uint32_t flags, MAPIERROR** error) = 0;
  TAMU_COM_METHOD GetMsgStoresTable(std::uint32_t flags, IMAPITable** table) = 0;
  TAMU_COM_METHOD OpenMsgStore(std::uintptr_t ui, std::uint32_t size, ENTRYID* entry_id,
                               const GUID* iid, std::uint32_t flags, IMsgStore** store) = 0;
  TAMU_COM_METHOD OpenAddressBook(std::uintptr_t ui, const GUID* iid, std::uint32_t flags,
                                  void** book) = 0;
  TAMU_COM_METHOD OpenProfileSection(const GUID* section, const GUID* iid, std::uint32_t flags,
                                     void** profile) = 0;
  TAMU_COM_METHOD GetStatusTable(std::uint32_t flags, IMAPITable** table) = 0;
  TAMU_COM_METHOD OpenEntry(std::uint32_t size, ENTRYID* entry_id, const GUID* iid,
                            std::uint32_t flags, std::uint32_t* type, IUnknown** object) = 0;
  TAMU_COM_METHOD CompareEntryIDs(std::uint32_t size1, ENTRYID* id1, std::uint32_t size2,
                                  ENTRYID* id2, std::uint32_t flags, std::uint32_t* result) = 0;
  TAMU_COM_METHOD Advise(std::uint32_t size, ENTRYID* entry_id, std::uint32_t events, void* sink,
                         std::uint32_t* connection) = 0;
  TAMU_COM_METHOD Unadvise(std::uint32_t connection) = 0;
  TAMU_COM_METHOD MessageOptions(std::uintptr_t ui, std::uint32_t flags, char16_t* type,
                                 IMessage* message) = 0;
  TAMU_COM_METHOD QueryDefaultMessageOpt(char16_t* type, std::uint32_t flags, std::uint32_t* count,
                                         SPropValue** values) = 0;
  TAMU_COM_METHOD EnumAdrTypes(std::uint32_t flags, std::uint32_t* count, char16_t*** types) = 0;
  TAMU_COM_METHOD QueryIdentity(std::uint32_t* size, ENTRYID** entry_id) = 0;
  TAMU_COM_METHOD Logoff(std::uintptr_t ui, std::uint32_t flags, std::uint32_t reserved) = 0;
  TAMU_COM_METHOD SetDefaultStore(std::uint32_t flags, std::uint32_t size, ENTRYID* entry_id) = 0;
  TAMU_COM_METHOD AdminServices(std::uint32_t flags, void** services) = 0;
  TAMU_COM_METHOD ShowForm(std::uintptr_t ui, IMsgStore* store, IMAPIFolder* parent,
                           const GUID* iid, std::uint32_t token, IMessage* sent,
                           std::uint32_t flags, std::uint32_t status, std::uint32_t message_flags,
                           std::uint32_t access, char* message_class) = 0;
  TAMU_COM_METHOD PrepareForm(const GUID* iid, IMessage* message, std::uint32_t* token) = 0;

 protected:
  ~IMAPISession() = default;
};

// Beyond the platform: folders of the embedded device find a message by index instead of by their
// contents table. Asked for with QueryInterface; a device that lacks it refuses.
inline constexpr GUID IID_IExactMailFind{
    0x8E2B6A41, 0x0C5F, 0x4D0B, {0xB2, 0x6D, 0x91, 0x3E, 0x58, 0xC4, 0x7A, 0x02}};

class IExactMailFind : public IUnknown {
 public:
  // The first message in order of arrival whose delivery time lies in the `count` given file times
  // from `first` on (10,000,000 is a second) and whose subject equals `length` units exactly; a
  // message without a subject has the empty one. `*found` is 0 when there is none; `id` takes 16
  // bytes.
  TAMU_COM_METHOD FindMessage(std::uint64_t first, std::uint64_t count, const char16_t* subject,
                              std::uint32_t length, std::uint8_t* id, std::uint32_t* found) = 0;

 protected:
  ~IExactMailFind() = default;
};

// --- Functions --------------------------------------------------------------

// Counted together with MAPIUninitialize; the argument may be null.
extern Service<HRESULT(void* init)> MAPIInitialize;
extern Service<void()> MAPIUninitialize;
// Profiles and passwords do not exist: all but the session are ignored.
extern Service<HRESULT(std::uintptr_t ui, char16_t* profile, char16_t* password,
                       std::uint32_t flags, IMAPISession** session)>
    MAPILogonEx;
// Frees a block and all that hangs on it; null does nothing. Returns 0.
extern Service<std::uint32_t(void* buffer)> MAPIFreeBuffer;
// Frees a row set with its rows; null does nothing.
extern Service<void(SRowSet* rows)> FreeProws;

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_CEMAPI_H_
