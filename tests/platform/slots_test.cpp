#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "platform/cemapi.h"
#include "platform/com.h"
#include "platform/poom.h"

namespace tamu::platform {
namespace {

// The place of a virtual method in its table, which is what the first word of a pointer to it says
// (Itanium C++ ABI): one more than its offset.
template <typename Method>
std::size_t SlotOf(Method method) {
  std::size_t word = 0;
  std::memcpy(&word, &method, sizeof(word));
  return (word - 1) / sizeof(void*);
}

#define TAMU_SLOT(interface_, slot, method) \
  EXPECT_EQ(SlotOf(&interface_::method), std::size_t{slot}) << #interface_ "::" #method

TEST(Slots, OfTheBaseInterfaces) {
  TAMU_SLOT(IUnknown, 0, QueryInterface);
  TAMU_SLOT(IUnknown, 1, AddRef);
  TAMU_SLOT(IUnknown, 2, Release);
  TAMU_SLOT(IDispatch, 3, GetTypeInfoCount);
  TAMU_SLOT(IDispatch, 4, GetTypeInfo);
  TAMU_SLOT(IDispatch, 5, GetIDsOfNames);
  TAMU_SLOT(IDispatch, 6, Invoke);
}

TEST(Slots, OfAppointment) {
  TAMU_SLOT(IAppointment, 7, ClearRecurrencePattern);
  TAMU_SLOT(IAppointment, 8, GetRecurrencePattern);
  TAMU_SLOT(IAppointment, 9, get_IsRecurring);
  TAMU_SLOT(IAppointment, 10, get_Subject);
  TAMU_SLOT(IAppointment, 11, get_Location);
  TAMU_SLOT(IAppointment, 12, get_Categories);
  TAMU_SLOT(IAppointment, 13, get_Start);
  TAMU_SLOT(IAppointment, 14, get_Duration);
  TAMU_SLOT(IAppointment, 15, get_End);
  TAMU_SLOT(IAppointment, 16, get_AllDayEvent);
  TAMU_SLOT(IAppointment, 17, get_BusyStatus);
  TAMU_SLOT(IAppointment, 18, get_Sensitivity);
  TAMU_SLOT(IAppointment, 19, get_Body);
  TAMU_SLOT(IAppointment, 20, get_Recipients);
  TAMU_SLOT(IAppointment, 21, get_MeetingStatus);
  TAMU_SLOT(IAppointment, 22, get_ReminderSet);
  TAMU_SLOT(IAppointment, 23, get_ReminderSoundFile);
  TAMU_SLOT(IAppointment, 24, get_ReminderMinutesBeforeStart);
  TAMU_SLOT(IAppointment, 25, get_ReminderOptions);
  TAMU_SLOT(IAppointment, 26, put_Subject);
  TAMU_SLOT(IAppointment, 27, put_Location);
  TAMU_SLOT(IAppointment, 28, put_Categories);
  TAMU_SLOT(IAppointment, 29, put_Start);
  TAMU_SLOT(IAppointment, 30, put_Duration);
  TAMU_SLOT(IAppointment, 31, put_End);
  TAMU_SLOT(IAppointment, 32, put_AllDayEvent);
  TAMU_SLOT(IAppointment, 33, put_BusyStatus);
  TAMU_SLOT(IAppointment, 34, put_Sensitivity);
  TAMU_SLOT(IAppointment, 35, put_Body);
  TAMU_SLOT(IAppointment, 36, put_ReminderSet);
  TAMU_SLOT(IAppointment, 37, put_ReminderSoundFile);
  TAMU_SLOT(IAppointment, 38, put_ReminderMinutesBeforeStart);
  TAMU_SLOT(IAppointment, 39, put_ReminderOptions);
  TAMU_SLOT(IAppointment, 40, Save);
  TAMU_SLOT(IAppointment, 41, Send);
  TAMU_SLOT(IAppointment, 42, Delete);
  TAMU_SLOT(IAppointment, 43, Cancel);
  TAMU_SLOT(IAppointment, 44, Copy);
  TAMU_SLOT(IAppointment, 45, Display);
  TAMU_SLOT(IAppointment, 46, get_Oid);
  TAMU_SLOT(IAppointment, 47, put_BodyInk);
  TAMU_SLOT(IAppointment, 48, get_BodyInk);
  TAMU_SLOT(IAppointment, 49, get_Application);
}

TEST(Slots, OfContact) {
  TAMU_SLOT(IContact, 7, get_Birthday);
  TAMU_SLOT(IContact, 8, get_Anniversary);
  TAMU_SLOT(IContact, 9, get_BusinessFaxNumber);
  TAMU_SLOT(IContact, 10, get_CompanyName);
  TAMU_SLOT(IContact, 11, get_Department);
  TAMU_SLOT(IContact, 12, get_Email1Address);
  TAMU_SLOT(IContact, 13, get_MobileTelephoneNumber);
  TAMU_SLOT(IContact, 14, get_OfficeLocation);
  TAMU_SLOT(IContact, 15, get_PagerNumber);
  TAMU_SLOT(IContact, 16, get_BusinessTelephoneNumber);
  TAMU_SLOT(IContact, 17, get_JobTitle);
  TAMU_SLOT(IContact, 18, get_HomeTelephoneNumber);
  TAMU_SLOT(IContact, 19, get_Email2Address);
  TAMU_SLOT(IContact, 20, get_Spouse);
  TAMU_SLOT(IContact, 21, get_Email3Address);
  TAMU_SLOT(IContact, 22, get_Home2TelephoneNumber);
  TAMU_SLOT(IContact, 23, get_HomeFaxNumber);
  TAMU_SLOT(IContact, 24, get_CarTelephoneNumber);
  TAMU_SLOT(IContact, 25, get_AssistantName);
  TAMU_SLOT(IContact, 26, get_AssistantTelephoneNumber);
  TAMU_SLOT(IContact, 27, get_Children);
  TAMU_SLOT(IContact, 28, get_Categories);
  TAMU_SLOT(IContact, 29, get_WebPage);
  TAMU_SLOT(IContact, 30, get_Business2TelephoneNumber);
  TAMU_SLOT(IContact, 31, get_Title);
  TAMU_SLOT(IContact, 32, get_FirstName);
  TAMU_SLOT(IContact, 33, get_MiddleName);
  TAMU_SLOT(IContact, 34, get_LastName);
  TAMU_SLOT(IContact, 35, get_Suffix);
  TAMU_SLOT(IContact, 36, get_HomeAddressStreet);
  TAMU_SLOT(IContact, 37, get_HomeAddressCity);
  TAMU_SLOT(IContact, 38, get_HomeAddressState);
  TAMU_SLOT(IContact, 39, get_HomeAddressPostalCode);
  TAMU_SLOT(IContact, 40, get_HomeAddressCountry);
  TAMU_SLOT(IContact, 41, get_OtherAddressStreet);
  TAMU_SLOT(IContact, 42, get_OtherAddressCity);
  TAMU_SLOT(IContact, 43, get_OtherAddressState);
  TAMU_SLOT(IContact, 44, get_OtherAddressPostalCode);
  TAMU_SLOT(IContact, 45, get_OtherAddressCountry);
  TAMU_SLOT(IContact, 46, get_BusinessAddressStreet);
  TAMU_SLOT(IContact, 47, get_BusinessAddressCity);
  TAMU_SLOT(IContact, 48, get_BusinessAddressState);
  TAMU_SLOT(IContact, 49, get_BusinessAddressPostalCode);
  TAMU_SLOT(IContact, 50, get_BusinessAddressCountry);
  TAMU_SLOT(IContact, 51, get_RadioTelephoneNumber);
  TAMU_SLOT(IContact, 52, get_FileAs);
  TAMU_SLOT(IContact, 53, get_Body);
  TAMU_SLOT(IContact, 54, get_YomiCompanyName);
  TAMU_SLOT(IContact, 55, get_YomiFirstName);
  TAMU_SLOT(IContact, 56, get_YomiLastName);
  TAMU_SLOT(IContact, 57, put_Birthday);
  TAMU_SLOT(IContact, 58, put_Anniversary);
  TAMU_SLOT(IContact, 59, put_BusinessFaxNumber);
  TAMU_SLOT(IContact, 60, put_CompanyName);
  TAMU_SLOT(IContact, 61, put_Department);
  TAMU_SLOT(IContact, 62, put_Email1Address);
  TAMU_SLOT(IContact, 63, put_MobileTelephoneNumber);
  TAMU_SLOT(IContact, 64, put_OfficeLocation);
  TAMU_SLOT(IContact, 65, put_PagerNumber);
  TAMU_SLOT(IContact, 66, put_BusinessTelephoneNumber);
  TAMU_SLOT(IContact, 67, put_JobTitle);
  TAMU_SLOT(IContact, 68, put_HomeTelephoneNumber);
  TAMU_SLOT(IContact, 69, put_Email2Address);
  TAMU_SLOT(IContact, 70, put_Spouse);
  TAMU_SLOT(IContact, 71, put_Email3Address);
  TAMU_SLOT(IContact, 72, put_Home2TelephoneNumber);
  TAMU_SLOT(IContact, 73, put_HomeFaxNumber);
  TAMU_SLOT(IContact, 74, put_CarTelephoneNumber);
  TAMU_SLOT(IContact, 75, put_AssistantName);
  TAMU_SLOT(IContact, 76, put_AssistantTelephoneNumber);
  TAMU_SLOT(IContact, 77, put_Children);
  TAMU_SLOT(IContact, 78, put_Categories);
  TAMU_SLOT(IContact, 79, put_WebPage);
  TAMU_SLOT(IContact, 80, put_Business2TelephoneNumber);
  TAMU_SLOT(IContact, 81, put_Title);
  TAMU_SLOT(IContact, 82, put_FirstName);
  TAMU_SLOT(IContact, 83, put_MiddleName);
  TAMU_SLOT(IContact, 84, put_LastName);
  TAMU_SLOT(IContact, 85, put_Suffix);
  TAMU_SLOT(IContact, 86, put_HomeAddressStreet);
  TAMU_SLOT(IContact, 87, put_HomeAddressCity);
  TAMU_SLOT(IContact, 88, put_HomeAddressState);
  TAMU_SLOT(IContact, 89, put_HomeAddressPostalCode);
  TAMU_SLOT(IContact, 90, put_HomeAddressCountry);
  TAMU_SLOT(IContact, 91, put_OtherAddressStreet);
  TAMU_SLOT(IContact, 92, put_OtherAddressCity);
  TAMU_SLOT(IContact, 93, put_OtherAddressState);
  TAMU_SLOT(IContact, 94, put_OtherAddressPostalCode);
  TAMU_SLOT(IContact, 95, put_OtherAddressCountry);
  TAMU_SLOT(IContact, 96, put_BusinessAddressStreet);
  TAMU_SLOT(IContact, 97, put_BusinessAddressCity);
  TAMU_SLOT(IContact, 98, put_BusinessAddressState);
  TAMU_SLOT(IContact, 99, put_BusinessAddressPostalCode);
  TAMU_SLOT(IContact, 100, put_BusinessAddressCountry);
  TAMU_SLOT(IContact, 101, put_RadioTelephoneNumber);
  TAMU_SLOT(IContact, 102, put_FileAs);
  TAMU_SLOT(IContact, 103, put_Body);
  TAMU_SLOT(IContact, 104, put_YomiCompanyName);
  TAMU_SLOT(IContact, 105, put_YomiFirstName);
  TAMU_SLOT(IContact, 106, put_YomiLastName);
  TAMU_SLOT(IContact, 107, Save);
  TAMU_SLOT(IContact, 108, Delete);
  TAMU_SLOT(IContact, 109, Copy);
  TAMU_SLOT(IContact, 110, Display);
  TAMU_SLOT(IContact, 111, get_Oid);
  TAMU_SLOT(IContact, 112, put_BodyInk);
  TAMU_SLOT(IContact, 113, get_BodyInk);
  TAMU_SLOT(IContact, 114, get_Application);
}

TEST(Slots, OfException) {
  TAMU_SLOT(IException, 7, get_AppointmentItem);
  TAMU_SLOT(IException, 8, get_OriginalDate);
  TAMU_SLOT(IException, 9, get_Deleted);
  TAMU_SLOT(IException, 10, get_Application);
}

TEST(Slots, OfExceptions) {
  TAMU_SLOT(IExceptions, 7, Item);
  TAMU_SLOT(IExceptions, 8, get_Count);
  TAMU_SLOT(IExceptions, 9, get__NewEnum);
  TAMU_SLOT(IExceptions, 10, get_Application);
}

TEST(Slots, OfFolder) {
  TAMU_SLOT(IFolder, 7, get_Items);
  TAMU_SLOT(IFolder, 8, get_DefaultItemType);
  TAMU_SLOT(IFolder, 9, get_Application);
  TAMU_SLOT(IFolder, 10, AddItemToInfraredFolder);
  TAMU_SLOT(IFolder, 11, SendToInfrared);
  TAMU_SLOT(IFolder, 12, ReceiveFromInfrared);
}

TEST(Slots, OfPOutlookApp) {
  TAMU_SLOT(IPOutlookApp, 7, Logon);
  TAMU_SLOT(IPOutlookApp, 8, Logoff);
  TAMU_SLOT(IPOutlookApp, 9, get_Version);
  TAMU_SLOT(IPOutlookApp, 10, GetDefaultFolder);
  TAMU_SLOT(IPOutlookApp, 11, CreateItem);
  TAMU_SLOT(IPOutlookApp, 12, GetItemFromOid);
  TAMU_SLOT(IPOutlookApp, 13, get_HomeCity);
  TAMU_SLOT(IPOutlookApp, 14, put_HomeCity);
  TAMU_SLOT(IPOutlookApp, 15, get_VisitingCity);
  TAMU_SLOT(IPOutlookApp, 16, put_VisitingCity);
  TAMU_SLOT(IPOutlookApp, 17, get_CurrentCityIndex);
  TAMU_SLOT(IPOutlookApp, 18, put_CurrentCityIndex);
  TAMU_SLOT(IPOutlookApp, 19, ReceiveFromInfrared);
  TAMU_SLOT(IPOutlookApp, 20, get_OutlookCompatible);
  TAMU_SLOT(IPOutlookApp, 21, GetTimeZoneFromIndex);
  TAMU_SLOT(IPOutlookApp, 22, GetTimeZoneInformationFromIndex);
  TAMU_SLOT(IPOutlookApp, 23, get_Application);
  TAMU_SLOT(IPOutlookApp, 24, SysFreeString);
  TAMU_SLOT(IPOutlookApp, 25, VariantTimeToSystemTime);
  TAMU_SLOT(IPOutlookApp, 26, SystemTimeToVariantTime);
}

TEST(Slots, OfPOutlookItemCollection) {
  TAMU_SLOT(IPOutlookItemCollection, 7, Add);
  TAMU_SLOT(IPOutlookItemCollection, 8, get_Count);
  TAMU_SLOT(IPOutlookItemCollection, 9, Find);
  TAMU_SLOT(IPOutlookItemCollection, 10, FindNext);
  TAMU_SLOT(IPOutlookItemCollection, 11, Item);
  TAMU_SLOT(IPOutlookItemCollection, 12, Remove);
  TAMU_SLOT(IPOutlookItemCollection, 13, Restrict);
  TAMU_SLOT(IPOutlookItemCollection, 14, Sort);
  TAMU_SLOT(IPOutlookItemCollection, 15, get_IncludeRecurrences);
  TAMU_SLOT(IPOutlookItemCollection, 16, put_IncludeRecurrences);
  TAMU_SLOT(IPOutlookItemCollection, 17, get__NewEnum);
  TAMU_SLOT(IPOutlookItemCollection, 18, get_Application);
}

TEST(Slots, OfRecipient) {
  TAMU_SLOT(IRecipient, 7, put_Address);
  TAMU_SLOT(IRecipient, 8, get_Address);
  TAMU_SLOT(IRecipient, 9, get_Name);
  TAMU_SLOT(IRecipient, 10, get_Application);
}

TEST(Slots, OfRecipients) {
  TAMU_SLOT(IRecipients, 7, Add);
  TAMU_SLOT(IRecipients, 8, Item);
  TAMU_SLOT(IRecipients, 9, Remove);
  TAMU_SLOT(IRecipients, 10, get_Count);
  TAMU_SLOT(IRecipients, 11, get__NewEnum);
  TAMU_SLOT(IRecipients, 12, get_Application);
}

TEST(Slots, OfRecurrencePattern) {
  TAMU_SLOT(IRecurrencePattern, 7, get_RecurrenceType);
  TAMU_SLOT(IRecurrencePattern, 8, get_PatternStartDate);
  TAMU_SLOT(IRecurrencePattern, 9, get_StartTime);
  TAMU_SLOT(IRecurrencePattern, 10, get_EndTime);
  TAMU_SLOT(IRecurrencePattern, 11, get_PatternEndDate);
  TAMU_SLOT(IRecurrencePattern, 12, get_NoEndDate);
  TAMU_SLOT(IRecurrencePattern, 13, get_Occurrences);
  TAMU_SLOT(IRecurrencePattern, 14, get_Interval);
  TAMU_SLOT(IRecurrencePattern, 15, get_DayOfWeekMask);
  TAMU_SLOT(IRecurrencePattern, 16, get_DayOfMonth);
  TAMU_SLOT(IRecurrencePattern, 17, get_Instance);
  TAMU_SLOT(IRecurrencePattern, 18, get_Duration);
  TAMU_SLOT(IRecurrencePattern, 19, get_MonthOfYear);
  TAMU_SLOT(IRecurrencePattern, 20, put_RecurrenceType);
  TAMU_SLOT(IRecurrencePattern, 21, put_PatternStartDate);
  TAMU_SLOT(IRecurrencePattern, 22, put_StartTime);
  TAMU_SLOT(IRecurrencePattern, 23, put_EndTime);
  TAMU_SLOT(IRecurrencePattern, 24, put_PatternEndDate);
  TAMU_SLOT(IRecurrencePattern, 25, put_NoEndDate);
  TAMU_SLOT(IRecurrencePattern, 26, put_Occurrences);
  TAMU_SLOT(IRecurrencePattern, 27, put_Interval);
  TAMU_SLOT(IRecurrencePattern, 28, put_DayOfWeekMask);
  TAMU_SLOT(IRecurrencePattern, 29, put_DayOfMonth);
  TAMU_SLOT(IRecurrencePattern, 30, put_Instance);
  TAMU_SLOT(IRecurrencePattern, 31, put_Duration);
  TAMU_SLOT(IRecurrencePattern, 32, put_MonthOfYear);
  TAMU_SLOT(IRecurrencePattern, 33, get_Exceptions);
  TAMU_SLOT(IRecurrencePattern, 34, get_Application);
  TAMU_SLOT(IRecurrencePattern, 35, GetOccurrence);
}

TEST(Slots, OfTask) {
  TAMU_SLOT(ITask, 7, ClearRecurrencePattern);
  TAMU_SLOT(ITask, 8, GetRecurrencePattern);
  TAMU_SLOT(ITask, 9, get_IsRecurring);
  TAMU_SLOT(ITask, 10, get_Subject);
  TAMU_SLOT(ITask, 11, get_Categories);
  TAMU_SLOT(ITask, 12, get_StartDate);
  TAMU_SLOT(ITask, 13, get_DueDate);
  TAMU_SLOT(ITask, 14, get_DateCompleted);
  TAMU_SLOT(ITask, 15, get_Importance);
  TAMU_SLOT(ITask, 16, get_Complete);
  TAMU_SLOT(ITask, 17, get_Sensitivity);
  TAMU_SLOT(ITask, 18, get_TeamTask);
  TAMU_SLOT(ITask, 19, get_Body);
  TAMU_SLOT(ITask, 20, get_ReminderSet);
  TAMU_SLOT(ITask, 21, get_ReminderSoundFile);
  TAMU_SLOT(ITask, 22, get_ReminderTime);
  TAMU_SLOT(ITask, 23, get_ReminderOptions);
  TAMU_SLOT(ITask, 24, put_Subject);
  TAMU_SLOT(ITask, 25, put_Categories);
  TAMU_SLOT(ITask, 26, put_StartDate);
  TAMU_SLOT(ITask, 27, put_DueDate);
  TAMU_SLOT(ITask, 28, put_Importance);
  TAMU_SLOT(ITask, 29, put_Complete);
  TAMU_SLOT(ITask, 30, put_Sensitivity);
  TAMU_SLOT(ITask, 31, put_TeamTask);
  TAMU_SLOT(ITask, 32, put_Body);
  TAMU_SLOT(ITask, 33, put_ReminderSet);
  TAMU_SLOT(ITask, 34, put_ReminderSoundFile);
  TAMU_SLOT(ITask, 35, put_ReminderTime);
  TAMU_SLOT(ITask, 36, put_ReminderOptions);
  TAMU_SLOT(ITask, 37, Save);
  TAMU_SLOT(ITask, 38, Delete);
  TAMU_SLOT(ITask, 39, SkipRecurrence);
  TAMU_SLOT(ITask, 40, Copy);
  TAMU_SLOT(ITask, 41, Display);
  TAMU_SLOT(ITask, 42, get_Oid);
  TAMU_SLOT(ITask, 43, put_BodyInk);
  TAMU_SLOT(ITask, 44, get_BodyInk);
  TAMU_SLOT(ITask, 45, get_Application);
}

TEST(Slots, OfMAPISession) {
  TAMU_SLOT(IMAPISession, 3, GetLastError);
  TAMU_SLOT(IMAPISession, 4, GetMsgStoresTable);
  TAMU_SLOT(IMAPISession, 5, OpenMsgStore);
  TAMU_SLOT(IMAPISession, 6, OpenAddressBook);
  TAMU_SLOT(IMAPISession, 7, OpenProfileSection);
  TAMU_SLOT(IMAPISession, 8, GetStatusTable);
  TAMU_SLOT(IMAPISession, 9, OpenEntry);
  TAMU_SLOT(IMAPISession, 10, CompareEntryIDs);
  TAMU_SLOT(IMAPISession, 11, Advise);
  TAMU_SLOT(IMAPISession, 12, Unadvise);
  TAMU_SLOT(IMAPISession, 13, MessageOptions);
  TAMU_SLOT(IMAPISession, 14, QueryDefaultMessageOpt);
  TAMU_SLOT(IMAPISession, 15, EnumAdrTypes);
  TAMU_SLOT(IMAPISession, 16, QueryIdentity);
  TAMU_SLOT(IMAPISession, 17, Logoff);
  TAMU_SLOT(IMAPISession, 18, SetDefaultStore);
  TAMU_SLOT(IMAPISession, 19, AdminServices);
  TAMU_SLOT(IMAPISession, 20, ShowForm);
  TAMU_SLOT(IMAPISession, 21, PrepareForm);
}

TEST(Slots, OfMAPIProp) {
  TAMU_SLOT(IMAPIProp, 3, GetLastError);
  TAMU_SLOT(IMAPIProp, 4, SaveChanges);
  TAMU_SLOT(IMAPIProp, 5, GetProps);
  TAMU_SLOT(IMAPIProp, 6, GetPropList);
  TAMU_SLOT(IMAPIProp, 7, OpenProperty);
  TAMU_SLOT(IMAPIProp, 8, SetProps);
  TAMU_SLOT(IMAPIProp, 9, DeleteProps);
  TAMU_SLOT(IMAPIProp, 10, CopyTo);
  TAMU_SLOT(IMAPIProp, 11, CopyProps);
  TAMU_SLOT(IMAPIProp, 12, GetNamesFromIDs);
  TAMU_SLOT(IMAPIProp, 13, GetIDsFromNames);
}

TEST(Slots, OfMsgStore) {
  TAMU_SLOT(IMsgStore, 14, Advise);
  TAMU_SLOT(IMsgStore, 15, Unadvise);
  TAMU_SLOT(IMsgStore, 16, CompareEntryIDs);
  TAMU_SLOT(IMsgStore, 17, OpenEntry);
  TAMU_SLOT(IMsgStore, 18, SetReceiveFolder);
  TAMU_SLOT(IMsgStore, 19, GetReceiveFolder);
  TAMU_SLOT(IMsgStore, 20, GetReceiveFolderTable);
  TAMU_SLOT(IMsgStore, 21, StoreLogoff);
  TAMU_SLOT(IMsgStore, 22, AbortSubmit);
  TAMU_SLOT(IMsgStore, 23, GetOutgoingQueue);
  TAMU_SLOT(IMsgStore, 24, SetLockState);
  TAMU_SLOT(IMsgStore, 25, FinishedMsg);
  TAMU_SLOT(IMsgStore, 26, NotifyNewMail);
}

TEST(Slots, OfMAPIContainer) {
  TAMU_SLOT(IMAPIContainer, 14, GetContentsTable);
  TAMU_SLOT(IMAPIContainer, 15, GetHierarchyTable);
  TAMU_SLOT(IMAPIContainer, 16, OpenEntry);
  TAMU_SLOT(IMAPIContainer, 17, SetSearchCriteria);
  TAMU_SLOT(IMAPIContainer, 18, GetSearchCriteria);
}

TEST(Slots, OfMAPIFolder) {
  TAMU_SLOT(IMAPIFolder, 19, CreateMessage);
  TAMU_SLOT(IMAPIFolder, 20, CopyMessages);
  TAMU_SLOT(IMAPIFolder, 21, DeleteMessages);
  TAMU_SLOT(IMAPIFolder, 22, CreateFolder);
  TAMU_SLOT(IMAPIFolder, 23, CopyFolder);
  TAMU_SLOT(IMAPIFolder, 24, DeleteFolder);
  TAMU_SLOT(IMAPIFolder, 25, SetReadFlags);
  TAMU_SLOT(IMAPIFolder, 26, GetMessageStatus);
  TAMU_SLOT(IMAPIFolder, 27, SetMessageStatus);
  TAMU_SLOT(IMAPIFolder, 28, SaveContentsSort);
  TAMU_SLOT(IMAPIFolder, 29, EmptyFolder);
}

TEST(Slots, OfMessage) {
  TAMU_SLOT(IMessage, 14, GetAttachmentTable);
  TAMU_SLOT(IMessage, 15, OpenAttach);
  TAMU_SLOT(IMessage, 16, CreateAttach);
  TAMU_SLOT(IMessage, 17, DeleteAttach);
  TAMU_SLOT(IMessage, 18, GetRecipientTable);
  TAMU_SLOT(IMessage, 19, ModifyRecipients);
  TAMU_SLOT(IMessage, 20, SubmitMessage);
  TAMU_SLOT(IMessage, 21, SetReadFlag);
}

TEST(Slots, OfMAPITable) {
  TAMU_SLOT(IMAPITable, 3, GetLastError);
  TAMU_SLOT(IMAPITable, 4, Advise);
  TAMU_SLOT(IMAPITable, 5, Unadvise);
  TAMU_SLOT(IMAPITable, 6, GetStatus);
  TAMU_SLOT(IMAPITable, 7, SetColumns);
  TAMU_SLOT(IMAPITable, 8, QueryColumns);
  TAMU_SLOT(IMAPITable, 9, GetRowCount);
  TAMU_SLOT(IMAPITable, 10, SeekRow);
  TAMU_SLOT(IMAPITable, 11, SeekRowApprox);
  TAMU_SLOT(IMAPITable, 12, QueryPosition);
  TAMU_SLOT(IMAPITable, 13, FindRow);
  TAMU_SLOT(IMAPITable, 14, Restrict);
  TAMU_SLOT(IMAPITable, 15, CreateBookmark);
  TAMU_SLOT(IMAPITable, 16, FreeBookmark);
  TAMU_SLOT(IMAPITable, 17, SortTable);
  TAMU_SLOT(IMAPITable, 18, QuerySortOrder);
  TAMU_SLOT(IMAPITable, 19, QueryRows);
  TAMU_SLOT(IMAPITable, 20, Abort);
  TAMU_SLOT(IMAPITable, 21, ExpandRow);
  TAMU_SLOT(IMAPITable, 22, CollapseRow);
  TAMU_SLOT(IMAPITable, 23, WaitForCompletion);
  TAMU_SLOT(IMAPITable, 24, GetCollapseState);
  TAMU_SLOT(IMAPITable, 25, SetCollapseState);
}

TEST(Slots, OfStream) {
  TAMU_SLOT(IStream, 3, Read);
  TAMU_SLOT(IStream, 4, Write);
  TAMU_SLOT(IStream, 5, Seek);
  TAMU_SLOT(IStream, 6, SetSize);
  TAMU_SLOT(IStream, 7, CopyTo);
  TAMU_SLOT(IStream, 8, Commit);
  TAMU_SLOT(IStream, 9, Revert);
  TAMU_SLOT(IStream, 10, LockRegion);
  TAMU_SLOT(IStream, 11, UnlockRegion);
  TAMU_SLOT(IStream, 12, Stat);
  TAMU_SLOT(IStream, 13, Clone);
}

}  // namespace
}  // namespace tamu::platform
