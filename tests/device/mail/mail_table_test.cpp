#include "device/mail/mail_fixture.h"

namespace tamu::testing {
namespace {

namespace hr = platform::hr;

class MailTable : public MailContract {
 protected:
  // Messages "0", "1", ... in the inbox.
  void Fill(int count) {
    for (int i = 0; i < count; ++i) {
      const ComPtr<IMessage> message = Create(inbox_);
      ASSERT_EQ(SetText(message.get(), platform::PR_SUBJECT, Name(i)), hr::kOk);
    }
  }

  static std::u16string Name(int i) {
    const std::string digits = std::to_string(i);
    return {digits.begin(), digits.end()};
  }

  // The subjects of the next rows, as one text.
  static std::u16string Subjects(const ComPtr<IMAPITable>& table, std::int32_t rows) {
    Rows out;
    Query(table.get(), rows, &out);
    EXPECT_GE(out.result, 0);
    std::u16string text;
    for (std::size_t i = 0; i < out.size(); ++i) {
      text += std::u16string(out.cell(i, 0).Value.lpszW) + u" ";
    }
    return text;
  }

  ComPtr<IMAPITable> SubjectTable() {
    ComPtr<IMAPITable> table = Contents(inbox_);
    Tags columns{platform::PR_SUBJECT};
    EXPECT_EQ(table->SetColumns(columns.get(), 0), hr::kOk);
    return table;
  }

  void DeleteSubject(const std::u16string& subject) {
    const ComPtr<IMAPITable> table = Contents(inbox_);
    Tags columns{platform::PR_SUBJECT, platform::PR_ENTRYID};
    ASSERT_EQ(table->SetColumns(columns.get(), 0), hr::kOk);
    Rows rows;
    Query(table.get(), 50, &rows);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (rows.cell(i, 0).Value.lpszW != subject) continue;
      platform::SBinary id = rows.cell(i, 1).Value.bin;
      platform::ENTRYLIST list{1, &id};
      ASSERT_EQ(inbox_->DeleteMessages(&list, 0, nullptr, 0), hr::kOk);
    }
  }
};

// --- Order and amount -------------------------------------------------------

TEST_P(MailTable, RowsComeInOrderOfArrivalWhateverTheirTimes) {
  static_cast<void>(Create(inbox_, u"first", 300));
  static_cast<void>(Create(outbox_, u"elsewhere", 1));
  static_cast<void>(Create(inbox_, u"second", 100));
  static_cast<void>(Create(inbox_, u"third", 200));
  EXPECT_EQ(Subjects(SubjectTable(), 50), u"first second third ");
}

TEST_P(MailTable, ModifiedMessageKeepsItsPlace) {
  const ComPtr<IMessage> first = Create(inbox_, u"first", 1);
  static_cast<void>(Create(inbox_, u"second", 1));
  ASSERT_EQ(SetText(first.get(), platform::PR_SUBJECT, u"changed"), hr::kOk);
  EXPECT_EQ(Subjects(SubjectTable(), 50), u"changed second ");
}

TEST_P(MailTable, QueryGivesAtMostWhatWasAsked) {
  Fill(5);
  const ComPtr<IMAPITable> table = SubjectTable();
  EXPECT_EQ(Subjects(table, 2), u"0 1 ");
  EXPECT_EQ(Subjects(table, 2), u"2 3 ");
  EXPECT_EQ(Subjects(table, 2), u"4 ");
  Rows end;
  Query(table.get(), 2, &end);
  EXPECT_EQ(end.result, hr::kOk);
  ASSERT_NE(end.set, nullptr);
  EXPECT_EQ(end.size(), 0U);
}

TEST_P(MailTable, LargeFolderIsReadToItsEnd) {
  constexpr int kMessages = 101;
  Fill(kMessages);
  const ComPtr<IMAPITable> table = SubjectTable();
  int seen = 0;
  for (;;) {
    Rows rows;
    Query(table.get(), 1000, &rows);
    ASSERT_EQ(rows.result, hr::kOk);
    if (rows.size() == 0) break;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      EXPECT_EQ(std::u16string(rows.cell(i, 0).Value.lpszW), Name(seen++));
    }
  }
  EXPECT_EQ(seen, kMessages);
}

TEST_P(MailTable, FiftyRowsComeAtOnce) {
  Fill(60);
  Rows rows;
  Query(SubjectTable().get(), 50, &rows);
  EXPECT_EQ(rows.size(), 50U);
}

TEST_P(MailTable, EmptyFolderHasNoRows) {
  Rows rows;
  Query(Contents(inbox_).get(), 50, &rows);
  EXPECT_EQ(rows.result, hr::kOk);
  ASSERT_NE(rows.set, nullptr);
  EXPECT_EQ(rows.size(), 0U);
}

TEST_P(MailTable, QueryRefusesOtherDirectionsAndFlags) {
  Fill(1);
  const ComPtr<IMAPITable> table = SubjectTable();
  platform::SRowSet* set = nullptr;
  EXPECT_EQ(table->QueryRows(0, 0, &set), hr::kInvalidArgument);
  EXPECT_EQ(table->QueryRows(-1, 0, &set), hr::kInvalidArgument);
  EXPECT_EQ(table->QueryRows(1, 1, &set), hr::kInvalidArgument);
  EXPECT_EQ(set, nullptr);
  EXPECT_EQ(table->QueryRows(1, 0, nullptr), hr::kInvalidArgument);
  EXPECT_EQ(Subjects(table, 1), u"0 ");
}

TEST_P(MailTable, EachRowIsABlockOfItsOwn) {
  Fill(3);
  const std::int64_t before = platform::LiveMapiBuffers();
  Rows rows;
  Query(SubjectTable().get(), 50, &rows);
  EXPECT_EQ(platform::LiveMapiBuffers(), before + 4);
}

// --- Columns ----------------------------------------------------------------

TEST_P(MailTable, ColumnsComeAsSet) {
  const ComPtr<IMessage> message = Create(inbox_, u"subject", 0x123456789ABCDEF);
  const ComPtr<IMAPITable> table = Contents(inbox_);
  Tags columns{platform::PR_SUBJECT, platform::PR_MESSAGE_DELIVERY_TIME, platform::PR_ENTRYID,
               platform::PR_PARENT_ENTRYID, platform::PR_OBJECT_TYPE};
  ASSERT_EQ(table->SetColumns(columns.get(), 0), hr::kOk);
  Rows rows;
  Query(table.get(), 50, &rows);
  ASSERT_EQ(rows.result, hr::kOk);
  ASSERT_EQ(rows.size(), 1U);
  ASSERT_EQ(rows.set->aRow[0].cValues, 5U);
  EXPECT_EQ(std::u16string(rows.cell(0, 0).Value.lpszW), u"subject");
  EXPECT_EQ(rows.cell(0, 1).Value.ft.dwHighDateTime, 0x01234567U);
  EXPECT_EQ(rows.cell(0, 1).Value.ft.dwLowDateTime, 0x89ABCDEFU);
  EXPECT_EQ(BinaryOf(rows.cell(0, 2)), EntryIdOf(message.get()));
  EXPECT_EQ(BinaryOf(rows.cell(0, 3)), inbox_id_);
  EXPECT_EQ(rows.cell(0, 4).Value.ul, platform::kObjectMessage);
}

TEST_P(MailTable, MissingCellIsAnErrorInItsPlace) {
  static_cast<void>(Create(inbox_, u"whole", 5));
  const ComPtr<IMessage> part = Create(inbox_);
  ASSERT_EQ(SetText(part.get(), platform::PR_SUBJECT, u"part"), hr::kOk);
  const ComPtr<IMAPITable> table = Contents(inbox_);
  Tags columns{platform::PR_MESSAGE_DELIVERY_TIME, platform::PR_SUBJECT};
  ASSERT_EQ(table->SetColumns(columns.get(), 0), hr::kOk);
  Rows rows;
  Query(table.get(), 50, &rows);
  EXPECT_EQ(rows.result, hr::kErrorsReturned);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows.cell(0, 0).ulPropTag, platform::PR_MESSAGE_DELIVERY_TIME);
  ASSERT_EQ(rows.set->aRow[1].cValues, 2U);
  EXPECT_EQ(platform::PropType(rows.cell(1, 0).ulPropTag), platform::kTypeError);
  EXPECT_EQ(rows.cell(1, 0).Value.err, hr::kNotFound);
  EXPECT_EQ(std::u16string(rows.cell(1, 1).Value.lpszW), u"part");
}

TEST_P(MailTable, SetColumnsNeedsColumns) {
  const ComPtr<IMAPITable> table = SubjectTable();
  Fill(1);
  Tags none{};
  Tags some{platform::PR_ENTRYID};
  EXPECT_EQ(table->SetColumns(nullptr, 0), hr::kInvalidArgument);
  EXPECT_EQ(table->SetColumns(none.get(), 0), hr::kInvalidArgument);
  EXPECT_EQ(table->SetColumns(some.get(), 1), hr::kInvalidArgument);
  EXPECT_EQ(Subjects(table, 50), u"0 ");
}

// --- Position ---------------------------------------------------------------

TEST_P(MailTable, SeekToTheBeginningStartsAgain) {
  Fill(3);
  const ComPtr<IMAPITable> table = SubjectTable();
  EXPECT_EQ(Subjects(table, 2), u"0 1 ");
  std::int32_t sought = 77;
  EXPECT_EQ(table->SeekRow(platform::kBookmarkBeginning, 0, &sought), hr::kOk);
  EXPECT_EQ(sought, 77);
  EXPECT_EQ(Subjects(table, 50), u"0 1 2 ");
  EXPECT_EQ(table->SeekRow(platform::kBookmarkBeginning, 0, nullptr), hr::kOk);
  EXPECT_EQ(Subjects(table, 50), u"0 1 2 ");
}

TEST_P(MailTable, SeekStaysBetweenFirstRowAndEnd) {
  Fill(60);
  const ComPtr<IMAPITable> table = SubjectTable();
  EXPECT_EQ(table->SeekRow(platform::kBookmarkBeginning, 55, nullptr), hr::kOk);
  EXPECT_EQ(Subjects(table, 1), u"55 ");
  EXPECT_EQ(table->SeekRow(platform::kBookmarkBeginning, -5, nullptr), hr::kOk);
  EXPECT_EQ(Subjects(table, 1), u"0 ");
  EXPECT_EQ(table->SeekRow(platform::kBookmarkBeginning, 2000000000, nullptr), hr::kOk);
  EXPECT_EQ(Subjects(table, 1), u"");
}

TEST_P(MailTable, OtherOriginsAreRefused) {
  Fill(2);
  const ComPtr<IMAPITable> table = SubjectTable();
  EXPECT_EQ(Subjects(table, 1), u"0 ");
  EXPECT_EQ(table->SeekRow(1, 0, nullptr), hr::kInvalidArgument);
  EXPECT_EQ(table->SeekRow(2, 0, nullptr), hr::kInvalidArgument);
  EXPECT_EQ(Subjects(table, 1), u"1 ");
}

TEST_P(MailTable, CountAndPositionFollowTheRows) {
  Fill(3);
  const ComPtr<IMAPITable> table = SubjectTable();
  std::uint32_t count = 77;
  EXPECT_EQ(table->GetRowCount(0, &count), hr::kOk);
  EXPECT_EQ(count, 3U);
  std::uint32_t row = 77;
  std::uint32_t numerator = 77;
  std::uint32_t denominator = 77;
  EXPECT_EQ(table->QueryPosition(&row, &numerator, &denominator), hr::kOk);
  EXPECT_EQ(row, 0U);
  EXPECT_EQ(numerator, 0U);
  EXPECT_EQ(denominator, 3U);
  EXPECT_EQ(Subjects(table, 2), u"0 1 ");
  EXPECT_EQ(table->QueryPosition(&row, &numerator, &denominator), hr::kOk);
  EXPECT_EQ(row, 2U);
  EXPECT_EQ(numerator, 2U);
  EXPECT_EQ(table->GetRowCount(0, nullptr), hr::kInvalidArgument);
  EXPECT_EQ(table->QueryPosition(nullptr, &numerator, &denominator), hr::kInvalidArgument);
}

TEST_P(MailTable, IsLive) {
  Fill(3);
  const ComPtr<IMAPITable> table = SubjectTable();
  EXPECT_EQ(Subjects(table, 2), u"0 1 ");
  DeleteSubject(u"1");
  DeleteSubject(u"2");
  static_cast<void>(Create(inbox_, u"new", 1));
  std::uint32_t row = 77;
  std::uint32_t numerator = 0;
  std::uint32_t denominator = 0;
  EXPECT_EQ(table->QueryPosition(&row, &numerator, &denominator), hr::kOk);
  EXPECT_EQ(row, 1U);
  EXPECT_EQ(Subjects(table, 50), u"new ");
  static_cast<void>(Create(inbox_, u"newer", 1));
  EXPECT_EQ(Subjects(table, 50), u"newer ");
}

TEST_P(MailTable, GetContentsTableNeedsAPointer) {
  EXPECT_EQ(inbox_->GetContentsTable(0, nullptr), hr::kInvalidArgument);
  EXPECT_EQ(session_->GetMsgStoresTable(0, nullptr), hr::kInvalidArgument);
}

TEST_P(MailTable, WhatThePlatformLacksIsNotSupported) {
  const ComPtr<IMAPITable> table = SubjectTable();
  std::uint32_t number = 77;
  platform::SPropTagArray* tags = nullptr;
  platform::SRowSet* set = nullptr;
  const HRESULT results[] = {
      table->Advise(0, nullptr, &number),
      table->Unadvise(0),
      table->GetStatus(&number, &number),
      table->QueryColumns(0, &tags),
      table->SeekRowApprox(0, 1),
      table->FindRow(nullptr, 0, 0),
      table->Restrict(nullptr, 0),
      table->CreateBookmark(&number),
      table->FreeBookmark(0),
      table->SortTable(nullptr, 0),
      table->QuerySortOrder(nullptr),
      table->Abort(),
      table->ExpandRow(0, nullptr, 0, 0, &set, &number),
      table->CollapseRow(0, nullptr, 0, &number),
      table->WaitForCompletion(0, 0, &number),
      table->GetCollapseState(0, 0, nullptr, &number, nullptr),
      table->SetCollapseState(0, 0, nullptr, &number),
  };
  for (const HRESULT result : results) EXPECT_EQ(result, hr::kNoSupport);
  EXPECT_EQ(number, 0U);
}

INSTANTIATE_TEST_SUITE_P(Devices, MailTable, ::testing::ValuesIn(MailDeviceKinds()), &NameOfKind);

}  // namespace
}  // namespace tamu::testing
