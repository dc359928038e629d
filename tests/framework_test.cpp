// The host framework layer: strings and the host string table, message
// formats, lists and maps, runtime classes, calendar dates.
#include <gtest/gtest.h>

#include <VrnIntf.h>

TEST(CStringTest, NullTextsCountAsEmpty) {
    CString text(nullptr);
    EXPECT_TRUE(text.IsEmpty());
    text = "abc";
    text = static_cast<const char*>(nullptr);
    EXPECT_STREQ(text, "");
    text += static_cast<const char*>(nullptr);
    EXPECT_EQ(text.GetLength(), 0);
    EXPECT_EQ(text.CompareNoCase(nullptr), 0);
    CStringList names;
    names.AddTail("COL1");
    names.AddTail(static_cast<const char*>(nullptr));
    EXPECT_STREQ(names.GetTail(), "");
    EXPECT_EQ(names.GetCount(), 2);
}

TEST(CStringTest, CaseFoldingIsAsciiOnly) {
    EXPECT_EQ(CString("Customer").CompareNoCase("CUSTOMER"), 0);
    EXPECT_NE(CString("Customer").CompareNoCase("CUSTOMERS"), 0);
    // Bytes beyond ASCII are compared as they are, whatever the locale.
    EXPECT_NE(CString("\xe9t\xe9").CompareNoCase("\xc9T\xc9"), 0);
    CString upper("order_line\xe9");
    upper.MakeUpper();
    EXPECT_STREQ(upper, "ORDER_LINE\xe9");
}

TEST(CStringTest, SlicesAndTrimsStayInsideTheText) {
    const CString text("SALES.ITEM");
    EXPECT_EQ(text.Find('.'), 5);
    EXPECT_EQ(text.Find('#'), -1);
    EXPECT_STREQ(text.Left(5), "SALES");
    EXPECT_STREQ(text.Mid(6), "ITEM");
    EXPECT_STREQ(text.Mid(40), "");
    EXPECT_STREQ(text.Left(-3), "");
    EXPECT_STREQ(text.Mid(-2, 5), "SALES");
    EXPECT_EQ(text.GetAt(99), '\0');
    CString quoted("\"\"DB1\"");
    quoted.TrimLeft('"');
    EXPECT_STREQ(quoted, "DB1\"");
    quoted.TrimRight('"');
    EXPECT_STREQ(quoted, "DB1");
    CString blanks("  name \t");
    blanks.TrimLeft();
    blanks.TrimRight();
    EXPECT_STREQ(blanks, "name");
}

TEST(StringTableTest, HostRegistersReplacesAndRemovesTexts) {
    CString text("left over");
    EXPECT_FALSE(text.LoadString(4711));  // unregistered: loads as empty
    EXPECT_STREQ(text, "");
    AfxSetResourceString(4711, "first");
    EXPECT_TRUE(text.LoadString(4711));
    EXPECT_STREQ(text, "first");
    AfxSetResourceString(4711, "second");
    text.LoadString(4711);
    EXPECT_STREQ(text, "second");
    AfxSetResourceString(4711, nullptr);
    EXPECT_FALSE(text.LoadString(4711));
    EXPECT_STREQ(text, "");
}

TEST(MessageFormatTest, ReplacesNumberedPlaceholders) {
    EXPECT_STREQ(AfxFormatMessage("%2 refers to %1 (%3)", "PARENT", "CHILD", "FK1"), "CHILD refers to PARENT (FK1)");
    EXPECT_STREQ(AfxFormatMessage("%1%1", "ab"), "abab");
    EXPECT_STREQ(AfxFormatMessage("missing %2", "one"), "missing ");
}

TEST(MessageFormatTest, PrintfDirectivesInHostTextsAreInert) {
    // A host text is data: printf directives must neither crash nor expand.
    EXPECT_STREQ(AfxFormatMessage("%s %d %n %x %%", "A"), "%s %d %n %x %%");
    EXPECT_STREQ(AfxFormatMessage("ends with %", "A"), "ends with %");
    EXPECT_STREQ(AfxFormatMessage("%4 and %0", "A"), "%4 and %0");
    EXPECT_STREQ(AfxFormatMessage(nullptr, "A"), "");
}

TEST(MessageFormatTest, FormatsLoadTheirTextByNumber) {
    AfxSetResourceString(3742, "Parent %1 of %2 not found");
    CString message;
    AfxFormatString2(message, 3742, "DEPT", "EMP");
    EXPECT_STREQ(message, "Parent DEPT of EMP not found");
    AfxSetResourceString(3742, nullptr);
    AfxFormatString2(message, 3742, "DEPT", "EMP");
    EXPECT_STREQ(message, "");
}

TEST(CListTest, KeepsInsertionOrderAndStablePositions) {
    CList<int, int> list;
    const POSITION two = list.AddTail(2);
    list.AddHead(1);
    const POSITION four = list.AddTail(4);
    list.InsertBefore(four, 3);
    list.InsertAfter(four, 5);
    std::vector<int> seen;
    for (POSITION pos = list.GetHeadPosition(); pos;) seen.push_back(list.GetNext(pos));
    EXPECT_EQ(seen, (std::vector<int>{1, 2, 3, 4, 5}));

    list.RemoveAt(two);
    EXPECT_EQ(list.GetAt(four), 4);  // other positions survive a removal
    EXPECT_EQ(list.GetCount(), 4);
    EXPECT_EQ(list.Find(4), four);
    EXPECT_EQ(list.Find(2), nullptr);
    EXPECT_EQ(list.GetAt(list.FindIndex(1)), 3);
    EXPECT_EQ(list.FindIndex(4), nullptr);
}

TEST(CListTest, RemovingFromHeadAndTailEmptiesTheList) {
    CList<int, int> list;
    EXPECT_EQ(list.RemoveHead(), 0);  // an empty list gives a default value
    list.AddTail(7);
    list.AddTail(8);
    EXPECT_EQ(list.RemoveTail(), 8);
    EXPECT_EQ(list.RemoveHead(), 7);
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.GetHeadPosition(), nullptr);
    EXPECT_EQ(list.GetTailPosition(), nullptr);
    list.AddHead(9);
    EXPECT_EQ(list.GetHead(), 9);
    EXPECT_EQ(list.GetTail(), 9);
}

TEST(MapTest, AddingUnderAPresentKeyReplaces) {
    int first = 1, second = 2;
    CMapIdToPtr<int> ids;
    ids.SetAt(35, &first);
    ids.SetAt(35, &second);
    EXPECT_EQ(ids.Find(35), &second);
    EXPECT_EQ(ids.GetCount(), 1);
    int* found = &first;
    EXPECT_FALSE(ids.Lookup(36, found));
    EXPECT_EQ(found, nullptr);

    CMapStringToPtr<int> names;
    names.SetAt("ITEM", &first);
    EXPECT_EQ(names.Find("ITEM"), &first);
    EXPECT_EQ(names.Find("item"), nullptr);  // case-sensitive: callers upper-case keys
    EXPECT_TRUE(names.RemoveKey("ITEM"));
    EXPECT_EQ(names.Find("ITEM"), nullptr);
}

TEST(RuntimeClassTest, ModelBuilderIsCreatableByItsExactNameOnly) {
    const CRuntimeClass* record = CRuntimeClass::FromName("CVrnAPI");
    ASSERT_NE(record, nullptr);
    EXPECT_STREQ(record->m_lpszClassName, "CVrnAPI");
    EXPECT_TRUE(record->IsDerivedFrom(RUNTIME_CLASS(CCmdTarget)));
    CObject* made = record->CreateObject();
    ASSERT_NE(made, nullptr);
    EXPECT_TRUE(made->IsKindOf(RUNTIME_CLASS(CVrnAPI)));
    EXPECT_EQ(static_cast<CVrnAPI*>(made)->GetDbType(), 0);
    delete made;

    CObject* direct = CVrnAPI::CreateObject();
    EXPECT_EQ(direct->GetRuntimeClass(), RUNTIME_CLASS(CVrnAPI));
    delete direct;
    for (const char* unknown : {"CNoSuchClass", "cvrnapi", static_cast<const char*>(nullptr)})
        EXPECT_EQ(CRuntimeClass::FromName(unknown), nullptr);
}

TEST(COleDateTimeTest, CountsDaysFromTheEndOf1899AndRejectsImpossibleDates) {
    EXPECT_DOUBLE_EQ(COleDateTime(1899, 12, 30, 0, 0, 0).m_dt, 0.0);
    EXPECT_DOUBLE_EQ(COleDateTime(1900, 1, 1, 12, 0, 0).m_dt, 2.5);
    const COleDateTime leap(2024, 2, 29, 23, 59, 58);
    EXPECT_EQ(leap.GetYear(), 2024);
    EXPECT_EQ(leap.GetMonth(), 2);
    EXPECT_EQ(leap.GetDay(), 29);
    EXPECT_EQ(leap.FormatIso(), "2024-02-29 23:59:58");
    const COleDateTime bad(2024, 13, 1, 0, 0, 0);
    EXPECT_EQ(bad.GetStatus(), COleDateTime::invalid);
    EXPECT_EQ(bad.FormatIso(), "");
}

TEST(COleDateTimeTest, CurrentTimeIsLocalTime) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    const COleDateTime current = COleDateTime::GetCurrentTime();
    EXPECT_EQ(current.GetYear(), local.tm_year + 1900);
    EXPECT_EQ(current.GetStatus(), COleDateTime::valid);
}
