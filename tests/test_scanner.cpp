#include "PLSection.h"
#include "PLSectionScanner.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

using Strings = std::vector<std::string>;

// Owns a malloc'd result of the scanner and gives it as a string (or "<null>").
std::string take(char* block)
{
    if (!block)
        return "<null>";
    std::string text(block);
    std::free(block);
    return text;
}

// A heap copy of the text, so that AddressSanitizer sees any read past its NUL.
std::unique_ptr<char[]> heapBuffer(const std::string& text)
{
    auto buffer = std::make_unique<char[]>(text.size() + 1);
    std::memcpy(buffer.get(), text.c_str(), text.size() + 1);
    return buffer;
}

// Calls `next` from `position` until it gives null: each result with the position it left,
// then the position the null left.
Strings walk(char* (*next)(const char*, long*), const std::string& text, long position = 0)
{
    auto buffer = heapBuffer(text);
    Strings seen;
    while (char* block = next(buffer.get(), &position))
        seen.push_back(take(block) + "@" + std::to_string(position));
    seen.push_back("end@" + std::to_string(position));
    return seen;
}

const std::string kTwoSections = "*** A:\ta\r\nk:\tv\r\n*** B:\tb\r\nm:\tw\r\n";

} // namespace

TEST(GetNextSection, WalksFromHeaderToHeader)
{
    EXPECT_EQ(walk(getNextSection, kTwoSections),
              (Strings { "*** A:\ta\r\nk:\tv\r\n@16", "*** B:\tb\r\nm:\tw\r\n@32", "end@32" }));
    // A last line without a line feed ends one past the length.
    EXPECT_EQ(walk(getNextSection, kTwoSections.substr(0, 30), 16),
              (Strings { "*** B:\tb\r\nm:\tw@31", "end@31" }));
    EXPECT_EQ(walk(getNextSection, "preamble\nmore\n*** A:\ta\nk:\tv\n"),
              (Strings { "*** A:\ta\nk:\tv\n@28", "end@28" }));
    // Without a header the position moves to the end.
    EXPECT_EQ(walk(getNextSection, "just text\nno header\n"), Strings { "end@20" });
    EXPECT_EQ(walk(getNextSection, "just text"), Strings { "end@10" });
}

TEST(GetNextSection, HeaderIsAFirstTokenBeginningWithThreeAsterisks)
{
    // Leading blanks and tabs are skipped; four asterisks or none blank after them still count.
    // "** E:", the CR LF line and "*x F:" are body lines of section D.
    EXPECT_EQ(walk(getNextSection, "*** A:\n  *** B:\n\t***C:\n****D:\n** E:\n\r\n*x F:\n"),
              (Strings { "*** A:\n@7", "  *** B:\n@16", "\t***C:\n@23",
                         "****D:\n** E:\n\r\n*x F:\n@44", "end@44" }));
}

TEST(GetNextSection, NullBufferPositionsPastTheEndAndNegativePositionsReadNothing)
{
    long position = 0;
    EXPECT_EQ(getNextSection(nullptr, &position), nullptr);
    for (long start : { 7L, 8L, 1000L, -1L })
        EXPECT_EQ(walk(getNextSection, "*** A:\n", start),
                  Strings { "end@" + std::to_string(start) });
    // Without a position the scan starts at 0.
    EXPECT_EQ(take(getNextSection(heapBuffer("*** A:\n").get(), nullptr)), "*** A:\n");
}

TEST(GetNextSection, InterleavedWalksOnTwoBuffersMatchSeparateWalks)
{
    // The length of a walk is remembered per thread; switching buffers must not confuse it.
    auto first = heapBuffer(kTwoSections);
    auto second = heapBuffer("*** X:\n1:\t2\n*** Y:\n*** Z:\nlast");
    long p1 = 0;
    long p2 = 0;
    Strings seen;
    for (int i = 0; i < 4; ++i) {
        seen.push_back(take(getNextSection(first.get(), &p1)));
        seen.push_back(take(getNextSection(second.get(), &p2)));
    }
    EXPECT_EQ(seen,
              (Strings { "*** A:\ta\r\nk:\tv\r\n", "*** X:\n1:\t2\n", "*** B:\tb\r\nm:\tw\r\n",
                         "*** Y:\n", "<null>", "*** Z:\nlast", "<null>", "<null>" }));
}

TEST(ReadLine, ReturnsLinesWithTheirLineEnds)
{
    EXPECT_EQ(walk(readLine, "one\r\ntwo\n\nlast"),
              (Strings { "one\r\n@5", "two\n@9", "\n@10", "last@15", "end@15" }));
    EXPECT_EQ(walk(readLine, ""), Strings { "end@0" });
    EXPECT_EQ(walk(readLine, "\nsecond\n", -5), Strings { "end@-5" });
    long position = 0;
    EXPECT_EQ(readLine(nullptr, &position), nullptr);
    // Without a position the first line comes back every time.
    auto two = heapBuffer("\nsecond\n");
    EXPECT_EQ(take(readLine(two.get(), nullptr)), "\n");
    EXPECT_EQ(take(readLine(two.get(), nullptr)), "\n");
    EXPECT_EQ(readLine(heapBuffer("").get(), nullptr), nullptr);
}

TEST(GetSectionBuffer, CutsAtTheBlankPrefixAnywhereInTheText)
{
    EXPECT_EQ(getSectionBuffer(L1("junk *** A:\tx\nk:\tv\n*** B:\ty\n")), L1("*** A:\tx\nk:\tv\n"));
    EXPECT_EQ(getSectionBuffer(L1("*** Only:\n")), L1("*** Only:\n"));
    EXPECT_TRUE(getSectionBuffer(L1("no prefix here\n")).isEmpty());
    // Without the blank after the asterisks there is no section for this function.
    EXPECT_TRUE(getSectionBuffer(L1("\t***Name:\nk:\tv\n")).isEmpty());
}

TEST(ParseSectionField, SplitsAtTheFirstColonWithoutTrimming)
{
    CPLSection section;
    ParseSectionField("Key: a:b \r\n", &section);
    QString raw;
    ASSERT_EQ(section.getRawValue(L1("key"), &raw), 0);
    EXPECT_EQ(raw, L1(" a:b ")); // the line end ends the line, not the value

    ParseSectionField("no colon here", &section);
    // A key with white space around it would not read back as itself.
    ParseSectionField(" Other : 1\n", &section);
    EXPECT_EQ(section.count(), 1);
}

TEST(ParseSectionFieldDeathTest, NullSectionStopsWithANamedAssertion)
{
    EXPECT_DEATH(ParseSectionField("k:v", nullptr),
                 "section != nullptr.*ParseSectionField.*PLSectionScanner\\.cpp");
}
