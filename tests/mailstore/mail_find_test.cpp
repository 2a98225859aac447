#include "mailstore/mail_find.h"

#include <gtest/gtest.h>

#include "support/dates.h"
#include "support/time_zone.h"

namespace tamu {
namespace {

using namespace platform;
using namespace tamu::testing;

constexpr DateFields kDoubtfulHour{2021, 10, 31, 2, 30, 15};

std::uint64_t FileTimeOf(const DateFields& utc) {
  const SYSTEMTIME time{static_cast<std::uint16_t>(utc.year),
                        static_cast<std::uint16_t>(utc.month),
                        0,
                        static_cast<std::uint16_t>(utc.day),
                        static_cast<std::uint16_t>(utc.hour),
                        static_cast<std::uint16_t>(utc.minute),
                        static_cast<std::uint16_t>(utc.second),
                        0};
  FILETIME file_time{};
  EXPECT_NE(SystemTimeToFileTime(&time, &file_time), 0);
  return std::uint64_t{file_time.dwHighDateTime} << 32 | file_time.dwLowDateTime;
}

SPropValue Cell(std::uint32_t tag) {
  SPropValue value{};
  value.ulPropTag = tag;
  return value;
}

// A row of subject and delivery time.
class TestRow {
 public:
  TestRow(const char16_t* subject, std::uint64_t delivered) {
    cells_[0] = Cell(PR_SUBJECT);
    cells_[0].Value.lpszW = const_cast<char16_t*>(subject);
    cells_[1] = Cell(PR_MESSAGE_DELIVERY_TIME);
    cells_[1].Value.ft = {static_cast<std::uint32_t>(delivered),
                          static_cast<std::uint32_t>(delivered >> 32)};
  }
  [[nodiscard]] SPropValue& cell(std::size_t index) { return cells_[index]; }
  [[nodiscard]] SRow row() { return {0, 2, cells_}; }

 private:
  SPropValue cells_[2]{};
};

TEST(MAIL_DeliverySeconds, OrdinaryTimeIsOneInstant) {
  const ScopedTimeZone zone(kBerlinZone);
  const FileTimeSeconds seconds = MAIL_DeliverySeconds({2021, 7, 1, 12, 0, 0});
  ASSERT_EQ(seconds.count, 1U);
  EXPECT_EQ(seconds.first[0], FileTimeOf({2021, 7, 1, 10, 0, 0}));
}

TEST(MAIL_DeliverySeconds, RepeatedHourIsTwoInstants) {
  const ScopedTimeZone zone(kBerlinZone);
  const FileTimeSeconds seconds = MAIL_DeliverySeconds(kDoubtfulHour);
  ASSERT_EQ(seconds.count, 2U);
  EXPECT_EQ(seconds.first[0], FileTimeOf({2021, 10, 31, 0, 30, 15}));
  EXPECT_EQ(seconds.first[1], FileTimeOf({2021, 10, 31, 1, 30, 15}));
}

TEST(MAIL_DeliverySeconds, MissingHourIsNone) {
  const ScopedTimeZone zone(kBerlinZone);
  EXPECT_EQ(MAIL_DeliverySeconds({2021, 3, 28, 2, 30, 0}).count, 0U);
}

TEST(MAIL_DeliverySeconds, YearsWithoutFileTimeAreNone) {
  EXPECT_EQ(MAIL_DeliverySeconds({1500, 1, 1, 0, 0, 0}).count, 0U);
}

TEST(MAIL_RowMatches, TimeToTheSecondAndSubjectExactly) {
  const ScopedTimeZone zone(kPlusOneZone);
  const std::uint64_t delivered = FileTimeOf({2003, 12, 31, 22, 59, 59});
  const MailKey key{DateFields{2003, 12, 31, 23, 59, 59}, u"Subject"};
  EXPECT_TRUE(MAIL_RowMatches(TestRow(u"Subject", delivered).row(), key));
  EXPECT_TRUE(MAIL_RowMatches(TestRow(u"Subject", delivered + 9999999).row(), key));
  EXPECT_FALSE(MAIL_RowMatches(TestRow(u"Subject", delivered + 10000000).row(), key));
  EXPECT_FALSE(MAIL_RowMatches(TestRow(u"Subject", delivered - 1).row(), key));
  EXPECT_FALSE(MAIL_RowMatches(TestRow(u"subject", delivered).row(), key));
}

TEST(MAIL_RowMatches, CellOfAnotherTypeIsNoTime) {
  TestRow row(u"", 0);
  row.cell(1) = Cell(PropTag(kTypeError, PropId(PR_MESSAGE_DELIVERY_TIME)));
  EXPECT_FALSE(MAIL_RowMatches(row.row(), {DateFields{1601, 1, 1, 0, 0, 0}, u""}));
}

TEST(MAIL_RowMatches, CellOfAnotherTypeIsTheEmptySubject) {
  const ScopedTimeZone zone(kUtcZone);
  TestRow row(u"", FileTimeOf({2003, 12, 31, 0, 0, 0}));
  row.cell(0) = Cell(PropTag(kTypeError, PropId(PR_SUBJECT)));
  EXPECT_TRUE(MAIL_RowMatches(row.row(), {DateFields{2003, 12, 31, 0, 0, 0}, u""}));
  EXPECT_FALSE(MAIL_RowMatches(row.row(), {DateFields{2003, 12, 31, 0, 0, 0}, u"x"}));
}

TEST(MAIL_RowMatches, KeyWithoutATimeMatchesNothing) {
  EXPECT_FALSE(MAIL_RowMatches(TestRow(u"", 0).row(), {std::nullopt, u""}));
}

}  // namespace
}  // namespace tamu
