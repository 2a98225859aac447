// platform/poom.h - the device's object model of contacts, appointments and tasks, as interfaces.
//   The application object is made with `CoCreateInstance` and logged on; everything else is
//   reached through it. Items are created unsaved; `Save` commits all that was put, atomically.
//   Methods stand in the platform's virtual-table order (tests pin the slots).
//   Units      dates are local time, days since 30 December 1899; kNoDate stands for none. Indexes
//              of collections start at 1.
//   Ownership  interfaces carry a reference, counted strings are the caller's to free; arguments
//              are borrowed for the call.
//   Errors     results of com.h and of namespace hr below. A collection's search that finds nothing
//              succeeds with a null item.
#ifndef TAMU_PLATFORM_POOM_H_
#define TAMU_PLATFORM_POOM_H_

#include <cstdint>

#include "platform/com.h"
#include "platform/time.h"

namespace tamu::platform {

inline constexpr DATE kNoDate = 949998.0;  // 1 January 4501

// Kinds of items that can be made.
inline constexpr std::int32_t kAppointmentItem = 1;
inline constexpr std::int32_t kContactItem = 2;
inline constexpr std::int32_t kTaskItem = 3;

// Default folders.
inline constexpr std::int32_t kCalendarFolder = 9;
inline constexpr std::int32_t kContactsFolder = 10;
inline constexpr std::int32_t kTasksFolder = 13;

inline constexpr std::int32_t kRecursDaily = 0;
inline constexpr std::int32_t kRecursWeekly = 1;
inline constexpr std::int32_t kRecursMonthly = 2;     // by day of the month
inline constexpr std::int32_t kRecursMonthlyNth = 3;  // by position
inline constexpr std::int32_t kRecursYearly = 5;      // by day
inline constexpr std::int32_t kRecursYearlyNth = 6;   // by position

inline constexpr std::int32_t kImportanceLow = 0;
inline constexpr std::int32_t kImportanceNormal = 1;
inline constexpr std::int32_t kImportanceHigh = 2;

inline constexpr std::int32_t kBusyFree = 0;
inline constexpr std::int32_t kBusyTentative = 1;
inline constexpr std::int32_t kBusyBusy = 2;
inline constexpr std::int32_t kBusyOutOfOffice = 3;

inline constexpr std::int32_t kSensitivityNormal = 0;
inline constexpr std::int32_t kSensitivityPrivate = 2;

inline constexpr std::int32_t kReminderDialog = 4;  // one bit of ReminderOptions

namespace hr {
inline constexpr HRESULT kFieldTooLarge = static_cast<HRESULT>(0x80040066U);
inline constexpr HRESULT kInvalidReminderTime = static_cast<HRESULT>(0x80040067U);
inline constexpr HRESULT kInvalidDates = static_cast<HRESULT>(0x80040068U);
inline constexpr HRESULT kAllDayMeeting = static_cast<HRESULT>(0x80040069U);
inline constexpr HRESULT kOverlappingException = static_cast<HRESULT>(0x8004006AU);
inline constexpr HRESULT kCannotChangeDate = static_cast<HRESULT>(0x8004006BU);
inline constexpr HRESULT kExceptionSameDay = static_cast<HRESULT>(0x8004006CU);
}  // namespace hr

// Counted bytes: a drawn note.
struct CEBLOB {
  std::uint32_t cb;
  std::uint8_t* lpb;
};

namespace poom_detail {
constexpr GUID Id(std::uint32_t data1, std::uint16_t data2, std::uint8_t byte) noexcept {
  return {data1, data2, 0x11D2, {0x8F, byte, 0x00, 0x00, 0xF8, 0x7A, 0x43, 0x35}};
}
}  // namespace poom_detail

inline constexpr GUID CLSID_Application = poom_detail::Id(0x05058F23, 0x20BE, 0x18);

inline constexpr GUID IID_IFolder = poom_detail::Id(0x05058F20, 0x20BE, 0x18);
inline constexpr GUID IID_IPOutlookApp = poom_detail::Id(0x05058F22, 0x20BE, 0x18);
inline constexpr GUID IID_IPOutlookItemCollection = poom_detail::Id(0xF06748C0, 0x21A5, 0x18);
inline constexpr GUID IID_IContact = poom_detail::Id(0x7F804E40, 0x2010, 0x18);
inline constexpr GUID IID_ITask = poom_detail::Id(0x37C78CE0, 0x202C, 0x18);
inline constexpr GUID IID_IAppointment = poom_detail::Id(0x5B43F691, 0x202C, 0x18);
inline constexpr GUID IID_IRecurrencePattern = poom_detail::Id(0x38F47300, 0x270F, 0x18);
inline constexpr GUID IID_IException = poom_detail::Id(0xB47398D0, 0x3B73, 0x1B);
inline constexpr GUID IID_IExceptions = poom_detail::Id(0xB47398D1, 0x3B73, 0x1B);
inline constexpr GUID IID_IRecipient = poom_detail::Id(0x7E136BE0, 0x5240, 0x1B);
inline constexpr GUID IID_IRecipients = poom_detail::Id(0x76065AE0, 0x2347, 0x18);

class IPOutlookApp;
class IPOutlookItemCollection;
class IAppointment;

// One change of a series: an occurrence that was deleted, or one that differs.
class IException : public IDispatch {
 public:
  // kFalse and null for a deleted occurrence.
  TAMU_COM_METHOD get_AppointmentItem(IAppointment** item) = 0;
  // Start of the occurrence as the pattern has it.
  TAMU_COM_METHOD get_OriginalDate(DATE* date) = 0;
  TAMU_COM_METHOD get_Deleted(VARIANT_BOOL* deleted) = 0;
  TAMU_COM_METHOD get_Application(IPOutlookApp** application) = 0;

 protected:
  ~IException() = default;
};

// The exceptions of a series, by date.
class IExceptions : public IDispatch {
 public:
  TAMU_COM_METHOD Item(std::int32_t index, IException** exception) = 0;
  TAMU_COM_METHOD get_Count(std::int32_t* count) = 0;
  TAMU_COM_METHOD get__NewEnum(IUnknown** enumerator) = 0;
  TAMU_COM_METHOD get_Application(IPOutlookApp** application) = 0;

 protected:
  ~IExceptions() = default;
};

// How an item repeats. An item becomes recurring when its pattern's type is put; `Save` of the item
// commits the pattern.
class IRecurrencePattern : public IDispatch {
 public:
  TAMU_COM_METHOD get_RecurrenceType(std::int32_t* type) = 0;
  TAMU_COM_METHOD get_PatternStartDate(DATE* date) = 0;
  TAMU_COM_METHOD get_StartTime(DATE* time) = 0;
  TAMU_COM_METHOD get_EndTime(DATE* time) = 0;
  TAMU_COM_METHOD get_PatternEndDate(DATE* date) = 0;
  TAMU_COM_METHOD get_NoEndDate(VARIANT_BOOL* no_end) = 0;
  TAMU_COM_METHOD get_Occurrences(std::int32_t* count) = 0;
  TAMU_COM_METHOD get_Interval(std::int32_t* interval) = 0;
  TAMU_COM_METHOD get_DayOfWeekMask(std::int32_t* mask) = 0;  // Sunday 1, Monday 2, ... Saturday 64
  TAMU_COM_METHOD get_DayOfMonth(std::int32_t* day) = 0;
  TAMU_COM_METHOD get_Instance(std::int32_t* instance) = 0;  // 1 to 4, 5 the last
  TAMU_COM_METHOD get_Duration(std::int32_t* minutes) = 0;
  TAMU_COM_METHOD get_MonthOfYear(std::int32_t* month) = 0;
  TAMU_COM_METHOD put_RecurrenceType(std::int32_t type) = 0;
  TAMU_COM_METHOD put_PatternStartDate(DATE date) = 0;
  TAMU_COM_METHOD put_StartTime(DATE time) = 0;
  TAMU_COM_METHOD put_EndTime(DATE time) = 0;
  TAMU_COM_METHOD put_PatternEndDate(DATE date) = 0;
  TAMU_COM_METHOD put_NoEndDate(VARIANT_BOOL no_end) = 0;
  TAMU_COM_METHOD put_Occurrences(std::int32_t count) = 0;
  TAMU_COM_METHOD put_Interval(std::int32_t interval) = 0;
  TAMU_COM_METHOD put_DayOfWeekMask(std::int32_t mask) = 0;
  TAMU_COM_METHOD put_DayOfMonth(std::int32_t day) = 0;
  TAMU_COM_METHOD put_Instance(std::int32_t instance) = 0;
  TAMU_COM_METHOD put_Duration(std::int32_t minutes) = 0;
  TAMU_COM_METHOD put_MonthOfYear(std::int32_t month) = 0;
  TAMU_COM_METHOD get_Exceptions(IExceptions** exceptions) = 0;
  TAMU_COM_METHOD get_Application(IPOutlookApp** application) = 0;
  // The occurrence of that date, as an appointment that can be deleted; kInvalidArgument when there
  // is none.
  TAMU_COM_METHOD GetOccurrence(DATE date, IAppointment** occurrence) = 0;

 protected:
  ~IRecurrencePattern() = default;
};

class IRecipient : public IDispatch {
 public:
  TAMU_COM_METHOD put_Address(BSTR address) = 0;
  TAMU_COM_METHOD get_Address(BSTR* address) = 0;
  TAMU_COM_METHOD get_Name(BSTR* name) = 0;
  TAMU_COM_METHOD get_Application(IPOutlookApp** application) = 0;

 protected:
  ~IRecipient() = default;
};

// The people asked to an appointment; saved with the appointment.
class IRecipients : public IDispatch {
 public:
  TAMU_COM_METHOD Add(BSTR name, IRecipient** recipient) = 0;
  TAMU_COM_METHOD Item(std::int32_t index, IRecipient** recipient) = 0;
  TAMU_COM_METHOD Remove(std::int32_t index) = 0;
  TAMU_COM_METHOD get_Count(std::int32_t* count) = 0;
  TAMU_COM_METHOD get__NewEnum(IUnknown** enumerator) = 0;
  TAMU_COM_METHOD get_Application(IPOutlookApp** application) = 0;

 protected:
  ~IRecipients() = default;
};

// The items of a folder, in the order of their ids unless sorted. Items come out as IDispatch and
// are the typed interface itself (a contact's IDispatch is its IContact).
class IPOutlookItemCollection : public IDispatch {
 public:
  TAMU_COM_METHOD Add(IDispatch** item) = 0;
  TAMU_COM_METHOD get_Count(std::int32_t* count) = 0;
  // A restriction is `[Property] op value` with = <> < <= > >=, joined by AND and OR, text in
  // double quotes, compared without regard to case.
  TAMU_COM_METHOD Find(BSTR restriction, IDispatch** item) = 0;
  TAMU_COM_METHOD FindNext(IDispatch** item) = 0;
  TAMU_COM_METHOD Item(std::int32_t index, IDispatch** item) = 0;
  // Deletes the item from the store.
  TAMU_COM_METHOD Remove(std::int32_t index) = 0;
  TAMU_COM_METHOD Restrict(BSTR restriction, IPOutlookItemCollection** items) = 0;
  TAMU_COM_METHOD Sort(BSTR property, VARIANT_BOOL descending) = 0;
  TAMU_COM_METHOD get_IncludeRecurrences(VARIANT_BOOL* include) = 0;
  TAMU_COM_METHOD put_IncludeRecurrences(VARIANT_BOOL include) = 0;
  TAMU_COM_METHOD get__NewEnum(IUnknown** enumerator) = 0;
  TAMU_COM_METHOD get_Application(IPOutlookApp** application) = 0;

 protected:
  ~IPOutlookItemCollection() = default;
};

// A contact's properties in the order of their slots: DATE_ and TEXT_ are expanded with each name.
#define TAMU_CONTACT_PROPERTIES(DATE_, TEXT_) \
  DATE_(Birthday)                             \
  DATE_(Anniversary)                          \
  TEXT_(BusinessFaxNumber)                    \
  TEXT_(CompanyName)                          \
  TEXT_(Department)                           \
  TEXT_(Email1Address)                        \
  TEXT_(MobileTelephoneNumber)                \
  TEXT_(OfficeLocation)                       \
  TEXT_(PagerNumber)                          \
  TEXT_(BusinessTelephoneNumber)              \
  TEXT_(JobTitle)                             \
  TEXT_(HomeTelephoneNumber)                  \
  TEXT_(Email2Address)                        \
  TEXT_(Spouse)                               \
  TEXT_(Email3Address)                        \
  TEXT_(Home2TelephoneNumber)                 \
  TEXT_(HomeFaxNumber)                        \
  TEXT_(CarTelephoneNumber)                   \
  TEXT_(AssistantName)                        \
  TEXT_(AssistantTelephoneNumber)             \
  TEXT_(Children)                             \
  TEXT_(Categories)                           \
  TEXT_(WebPage)                              \
  TEXT_(Business2TelephoneNumber)             \
  TEXT_(Title)                                \
  TEXT_(FirstName)                            \
  TEXT_(MiddleName)                           \
  TEXT_(LastName)                             \
  TEXT_(Suffix)                               \
  TEXT_(HomeAddressStreet)                    \
  TEXT_(HomeAddressCity)                      \
  TEXT_(HomeAddressState)                     \
  TEXT_(HomeAddressPostalCode)                \
  TEXT_(HomeAddressCountry)                   \
  TEXT_(OtherAddressStreet)                   \
  TEXT_(OtherAddressCity)                     \
  TEXT_(OtherAddressState)                    \
  TEXT_(OtherAddressPostalCode)               \
  TEXT_(OtherAddressCountry)                  \
  TEXT_(BusinessAddressStreet)                \
  TEXT_(BusinessAddressCity)                  \
  TEXT_(BusinessAddressState)                 \
  TEXT_(BusinessAddressPostalCode)            \
  TEXT_(BusinessAddressCountry)               \
  TEXT_(RadioTelephoneNumber)                 \
  TEXT_(FileAs)                               \
  TEXT_(Body)                                 \
  TEXT_(YomiCompanyName)                      \
  TEXT_(YomiFirstName)                        \
  TEXT_(YomiLastName)

// Fifty getters, fifty setters in the same order, then the verbs.
class IContact : public IDispatch {
 public:
#define TAMU_GET_DATE(name) TAMU_COM_METHOD get_##name(DATE* value) = 0;
#define TAMU_GET_TEXT(name) TAMU_COM_METHOD get_##name(BSTR* value) = 0;
#define TAMU_PUT_DATE(name) TAMU_COM_METHOD put_##name(DATE value) = 0;
#define TAMU_PUT_TEXT(name) TAMU_COM_METHOD put_##name(BSTR value) = 0;
  TAMU_CONTACT_PROPERTIES(TAMU_GET_DATE, TAMU_GET_TEXT)
  TAMU_CONTACT_PROPERTIES(TAMU_PUT_DATE, TAMU_PUT_TEXT)
#undef TAMU_GET_DATE
#undef TAMU_GET_TEXT
#undef TAMU_PUT_DATE
#undef TAMU_PUT_TEXT
  TAMU_COM_METHOD Save() = 0;
  TAMU_COM_METHOD Delete() = 0;
  // An unsaved item with the same properties.
  TAMU_COM_METHOD Copy(IContact** copy) = 0;
  TAMU_COM_METHOD Display() = 0;
  // 0 for an item that was never saved.
  TAMU_COM_METHOD get_Oid(std::int32_t* oid) = 0;
  TAMU_COM_METHOD put_BodyInk(CEBLOB* ink) = 0;
  TAMU_COM_METHOD get_BodyInk(CEBLOB* ink) = 0;
  TAMU_COM_METHOD get_Application(IPOutlookApp** application) = 0;

 protected:
  ~IContact() = default;
};

class ITask : public IDispatch {
 public:
  TAMU_COM_METHOD ClearRecurrencePattern() = 0;
  TAMU_COM_METHOD GetRecurrencePattern(IRecurrencePattern** pattern) = 0;
  TAMU_COM_METHOD get_IsRecurring(VARIANT_BOOL* recurring) = 0;
  TAMU_COM_METHOD get_Subject(BSTR* text) = 0;
  TAMU_COM_METHOD get_Categories(BSTR* text) = 0;
  TAMU_COM_METHOD get_StartDate(DATE* date) = 0;
  TAMU_COM_METHOD get_DueDate(DATE* date) = 0;
  TAMU_COM_METHOD get_DateCompleted(DATE* date) = 0;
  TAMU_COM_METHOD get_Importance(std::int32_t* importance) = 0;
  TAMU_COM_METHOD get_Complete(VARIANT_BOOL* complete) = 0;
  TAMU_COM_METHOD get_Sensitivity(std::int32_t* sensitivity) = 0;
  TAMU_COM_METHOD get_TeamTask(VARIANT_BOOL* team) = 0;
  TAMU_COM_METHOD get_Body(BSTR* text) = 0;
  TAMU_COM_METHOD get_ReminderSet(VARIANT_BOOL* set) = 0;
  TAMU_COM_METHOD get_ReminderSoundFile(BSTR* path) = 0;
  TAMU_COM_METHOD get_ReminderTime(DATE* time) = 0;
  TAMU_COM_METHOD get_ReminderOptions(std::int32_t* options) = 0;
  TAMU_COM_METHOD put_Subject(BSTR text) = 0;
  TAMU_COM_METHOD put_Categories(BSTR text) = 0;
  TAMU_COM_METHOD put_StartDate(DATE date) = 0;
  TAMU_COM_METHOD put_DueDate(DATE date) = 0;
  TAMU_COM_METHOD put_Importance(std::int32_t importance) = 0;
  // Stamps or clears DateCompleted.
  TAMU_COM_METHOD put_Complete(VARIANT_BOOL complete) = 0;
  TAMU_COM_METHOD put_Sensitivity(std::int32_t sensitivity) = 0;
  TAMU_COM_METHOD put_TeamTask(VARIANT_BOOL team) = 0;
  TAMU_COM_METHOD put_Body(BSTR text) = 0;
  TAMU_COM_METHOD put_ReminderSet(VARIANT_BOOL set) = 0;
  TAMU_COM_METHOD put_ReminderSoundFile(BSTR path) = 0;
  TAMU_COM_METHOD put_ReminderTime(DATE time) = 0;
  TAMU_COM_METHOD put_ReminderOptions(std::int32_t options) = 0;
  TAMU_COM_METHOD Save() = 0;
  TAMU_COM_METHOD Delete() = 0;
  TAMU_COM_METHOD SkipRecurrence() = 0;
  TAMU_COM_METHOD Copy(ITask** copy) = 0;
  TAMU_COM_METHOD Display() = 0;
  TAMU_COM_METHOD get_Oid(std::int32_t* oid) = 0;
  TAMU_COM_METHOD put_BodyInk(CEBLOB* ink) = 0;
  TAMU_COM_METHOD get_BodyInk(CEBLOB* ink) = 0;
  TAMU_COM_METHOD get_Application(IPOutlookApp** application) = 0;

 protected:
  ~ITask() = default;
};

class IAppointment : public IDispatch {
 public:
  TAMU_COM_METHOD ClearRecurrencePattern() = 0;
  TAMU_COM_METHOD GetRecurrencePattern(IRecurrencePattern** pattern) = 0;
  TAMU_COM_METHOD get_IsRecurring(VARIANT_BOOL* recurring) = 0;
  TAMU_COM_METHOD get_Subject(BSTR* text) = 0;
  TAMU_COM_METHOD get_Location(BSTR* text) = 0;
  TAMU_COM_METHOD get_Categories(BSTR* text) = 0;
  TAMU_COM_METHOD get_Start(DATE* date) = 0;
  TAMU_COM_METHOD get_Duration(std::int32_t* minutes) = 0;
  TAMU_COM_METHOD get_End(DATE* date) = 0;
  TAMU_COM_METHOD get_AllDayEvent(VARIANT_BOOL* all_day) = 0;
  TAMU_COM_METHOD get_BusyStatus(std::int32_t* status) = 0;
  TAMU_COM_METHOD get_Sensitivity(std::int32_t* sensitivity) = 0;
  TAMU_COM_METHOD get_Body(BSTR* text) = 0;
  TAMU_COM_METHOD get_Recipients(IRecipients** recipients) = 0;
  TAMU_COM_METHOD get_MeetingStatus(std::int32_t* status) = 0;
  TAMU_COM_METHOD get_ReminderSet(VARIANT_BOOL* set) = 0;
  TAMU_COM_METHOD get_ReminderSoundFile(BSTR* path) = 0;
  TAMU_COM_METHOD get_ReminderMinutesBeforeStart(std::int32_t* minutes) = 0;
  TAMU_COM_METHOD get_ReminderOptions(std::int32_t* options) = 0;
  TAMU_COM_METHOD put_Subject(BSTR text) = 0;
  TAMU_COM_METHOD put_Location(BSTR text) = 0;
  TAMU_COM_METHOD put_Categories(BSTR text) = 0;
  // Keeps the duration.
  TAMU_COM_METHOD put_Start(DATE date) = 0;
  TAMU_COM_METHOD put_Duration(std::int32_t minutes) = 0;
  // Changes the duration.
  TAMU_COM_METHOD put_End(DATE date) = 0;
  TAMU_COM_METHOD put_AllDayEvent(VARIANT_BOOL all_day) = 0;
  TAMU_COM_METHOD put_BusyStatus(std::int32_t status) = 0;
  TAMU_COM_METHOD put_Sensitivity(std::int32_t sensitivity) = 0;
  TAMU_COM_METHOD put_Body(BSTR text) = 0;
  TAMU_COM_METHOD put_ReminderSet(VARIANT_BOOL set) = 0;
  TAMU_COM_METHOD put_ReminderSoundFile(BSTR path) = 0;
  TAMU_COM_METHOD put_ReminderMinutesBeforeStart(std::int32_t minutes) = 0;
  TAMU_COM_METHOD put_ReminderOptions(std::int32_t options) = 0;
  TAMU_COM_METHOD Save() = 0;
  TAMU_COM_METHOD Send() = 0;
  // Of an occurrence: makes an exception of its series.
  TAMU_COM_METHOD Delete() = 0;
  TAMU_COM_METHOD Cancel() = 0;
  TAMU_COM_METHOD Copy(IAppointment** copy) = 0;
  TAMU_COM_METHOD Display() = 0;
  TAMU_COM_METHOD get_Oid(std::int32_t* oid) = 0;
  TAMU_COM_METHOD put_BodyInk(CEBLOB* ink) = 0;
  TAMU_COM_METHOD get_BodyInk(CEBLOB* ink) = 0;
  TAMU_COM_METHOD get_Application(IPOutlookApp** application) = 0;

 protected:
  ~IAppointment() = default;
};

class IFolder : public IDispatch {
 public:
  TAMU_COM_METHOD get_Items(IPOutlookItemCollection** items) = 0;
  TAMU_COM_METHOD get_DefaultItemType(std::int32_t* type) = 0;
  TAMU_COM_METHOD get_Application(IPOutlookApp** application) = 0;
  TAMU_COM_METHOD AddItemToInfraredFolder(std::int32_t type, IDispatch* item) = 0;
  TAMU_COM_METHOD SendToInfrared() = 0;
  TAMU_COM_METHOD ReceiveFromInfrared(IPOutlookItemCollection** items) = 0;

 protected:
  ~IFolder() = default;
};

class IPOutlookApp : public IDispatch {
 public:
  // The first call; kFalse when already logged on. `window` may be 0.
  TAMU_COM_METHOD Logon(std::int32_t window) = 0;
  TAMU_COM_METHOD Logoff() = 0;
  TAMU_COM_METHOD get_Version(BSTR* version) = 0;
  TAMU_COM_METHOD GetDefaultFolder(std::int32_t folder, IFolder** out) = 0;
  TAMU_COM_METHOD CreateItem(std::int32_t type, IDispatch** item) = 0;
  // kItemNotFound for an id that no item has, kInvalidArgument for 0.
  TAMU_COM_METHOD GetItemFromOid(std::int32_t oid, IDispatch** item) = 0;
  // Cities and time zones keep their slots; the library does not use them.
  TAMU_COM_METHOD get_HomeCity(IDispatch** city) = 0;
  TAMU_COM_METHOD put_HomeCity(IDispatch* city) = 0;
  TAMU_COM_METHOD get_VisitingCity(IDispatch** city) = 0;
  TAMU_COM_METHOD put_VisitingCity(IDispatch* city) = 0;
  TAMU_COM_METHOD get_CurrentCityIndex(std::int32_t* index) = 0;
  TAMU_COM_METHOD put_CurrentCityIndex(std::int32_t index) = 0;
  TAMU_COM_METHOD ReceiveFromInfrared() = 0;
  TAMU_COM_METHOD get_OutlookCompatible(VARIANT_BOOL* compatible) = 0;
  TAMU_COM_METHOD GetTimeZoneFromIndex(std::int32_t index, IDispatch** zone) = 0;
  TAMU_COM_METHOD GetTimeZoneInformationFromIndex(std::int32_t index, void* information) = 0;
  TAMU_COM_METHOD get_Application(IPOutlookApp** application) = 0;
  TAMU_COM_METHOD SysFreeString(BSTR string) = 0;
  TAMU_COM_METHOD VariantTimeToSystemTime(DATE date, SYSTEMTIME* time) = 0;
  TAMU_COM_METHOD SystemTimeToVariantTime(SYSTEMTIME* time, DATE* date) = 0;

 protected:
  ~IPOutlookApp() = default;
};

// Beyond the platform: collections of the embedded device answer by index what else takes a walk.
// Asked for with QueryInterface; a device that lacks it refuses.
inline constexpr GUID IID_IExactFind{
    0x5D1C8F0A, 0x6B1E, 0x4E57, {0x9A, 0x41, 0x2C, 0x77, 0x0E, 0x93, 0xB5, 0x1D}};

struct ExactTerm {
  const char16_t* property;  // its name: u"LastName"
  const char16_t* text;      // of a text; borrowed, may be null for the empty text
  std::uint32_t length;      // in UTF-16 units
  DATE date;                 // of a date
};

class IExactFind : public IUnknown {
 public:
  // The item with the lowest id whose properties all equal the terms' values exactly, or null.
  TAMU_COM_METHOD FindExact(const ExactTerm* terms, std::uint32_t count, IDispatch** item) = 0;

 protected:
  ~IExactFind() = default;
};

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_POOM_H_
