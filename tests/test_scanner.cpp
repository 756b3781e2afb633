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

const std::string kTwoSections = "*** A:\ta\r\nk:\tv\r\n*** B:\tb\r\nm:\tw\r\n";

} // namespace

TEST(GetNextSection, WalksSectionsAndLeavesThePositionOnTheNextHeader)
{
    auto buffer = heapBuffer(kTwoSections);
    long position = 0;
    EXPECT_EQ(take(getNextSection(buffer.get(), &position)), "*** A:\ta\r\nk:\tv\r\n");
    EXPECT_EQ(position, 16);
    EXPECT_EQ(take(getNextSection(buffer.get(), &position)), "*** B:\tb\r\nm:\tw\r\n");
    EXPECT_EQ(position, long(kTwoSections.size()));
    EXPECT_EQ(take(getNextSection(buffer.get(), &position)), "<null>");
    EXPECT_EQ(position, long(kTwoSections.size()));
}

TEST(GetNextSection, LastLineWithoutLineFeedEndsOnePastTheLength)
{
    const std::string text = kTwoSections.substr(0, kTwoSections.size() - 2);
    auto buffer = heapBuffer(text);
    long position = 16;
    EXPECT_EQ(take(getNextSection(buffer.get(), &position)), "*** B:\tb\r\nm:\tw");
    EXPECT_EQ(position, long(text.size()) + 1);
    EXPECT_EQ(take(getNextSection(buffer.get(), &position)), "<null>");
    EXPECT_EQ(position, long(text.size()) + 1);
}

TEST(GetNextSection, PassesOverTextBeforeTheFirstHeader)
{
    auto buffer = heapBuffer("preamble\nmore\n*** A:\ta\nk:\tv\n");
    long position = 0;
    EXPECT_EQ(take(getNextSection(buffer.get(), &position)), "*** A:\ta\nk:\tv\n");
    EXPECT_EQ(take(getNextSection(buffer.get(), &position)), "<null>");
}

TEST(GetNextSection, NoHeaderMovesThePositionToTheEnd)
{
    auto withLineFeed = heapBuffer("just text\nno header\n");
    long position = 0;
    EXPECT_EQ(take(getNextSection(withLineFeed.get(), &position)), "<null>");
    EXPECT_EQ(position, 20);

    auto withoutLineFeed = heapBuffer("just text");
    position = 0;
    EXPECT_EQ(take(getNextSection(withoutLineFeed.get(), &position)), "<null>");
    EXPECT_EQ(position, 10);
}

TEST(GetNextSection, HeaderIsAFirstTokenBeginningWithThreeAsterisks)
{
    // Leading blanks and tabs are skipped; four asterisks or none blank after them still count.
    auto buffer = heapBuffer("*** A:\n  *** B:\n\t***C:\n****D:\n** E:\n\r\n*x F:\n");
    std::vector<std::string> sections;
    long position = 0;
    while (char* block = getNextSection(buffer.get(), &position))
        sections.push_back(take(block));
    // "** E:", the CR LF line and "*x F:" are body lines of section D.
    EXPECT_EQ(sections,
              (std::vector<std::string> { "*** A:\n", "  *** B:\n", "\t***C:\n",
                                          "****D:\n** E:\n\r\n*x F:\n" }));
}

TEST(GetNextSection, NullBufferPositionsPastTheEndAndNegativePositionsReadNothing)
{
    long position = 0;
    EXPECT_EQ(getNextSection(nullptr, &position), nullptr);
    auto buffer = heapBuffer("*** A:\n");
    for (long start : { 7L, 8L, 1000L, -1L }) {
        position = start;
        EXPECT_EQ(getNextSection(buffer.get(), &position), nullptr) << start;
        EXPECT_EQ(position, start);
    }
    // Without a position the scan starts at 0.
    EXPECT_EQ(take(getNextSection(buffer.get(), nullptr)), "*** A:\n");
}

TEST(GetNextSection, InterleavedWalksOnTwoBuffersMatchSeparateWalks)
{
    // The length of a walk is remembered per thread; switching buffers must not confuse it.
    auto first = heapBuffer(kTwoSections);
    auto second = heapBuffer("*** X:\n1:\t2\n*** Y:\n*** Z:\nlast");
    long p1 = 0;
    long p2 = 0;
    std::vector<std::string> seen;
    for (int i = 0; i < 4; ++i) {
        seen.push_back(take(getNextSection(first.get(), &p1)));
        seen.push_back(take(getNextSection(second.get(), &p2)));
    }
    EXPECT_EQ(seen,
              (std::vector<std::string> { "*** A:\ta\r\nk:\tv\r\n", "*** X:\n1:\t2\n",
                                          "*** B:\tb\r\nm:\tw\r\n", "*** Y:\n", "<null>",
                                          "*** Z:\nlast", "<null>", "<null>" }));
}

TEST(ReadLine, ReturnsLinesWithTheirLineEnds)
{
    auto buffer = heapBuffer("one\r\ntwo\n\nlast");
    long position = 0;
    std::vector<std::string> lines;
    std::vector<long> positions;
    while (char* line = readLine(buffer.get(), &position)) {
        lines.push_back(take(line));
        positions.push_back(position);
    }
    EXPECT_EQ(lines, (std::vector<std::string> { "one\r\n", "two\n", "\n", "last" }));
    EXPECT_EQ(positions, (std::vector<long> { 5, 9, 10, 15 }));
}

TEST(ReadLine, BoundaryCases)
{
    auto abc = heapBuffer("abc");
    long position = 0;
    EXPECT_EQ(take(readLine(abc.get(), &position)), "abc");
    EXPECT_EQ(position, 4);
    EXPECT_EQ(readLine(abc.get(), &position), nullptr);
    EXPECT_EQ(position, 4);

    auto empty = heapBuffer("");
    position = 0;
    EXPECT_EQ(readLine(empty.get(), &position), nullptr);
    EXPECT_EQ(readLine(empty.get(), nullptr), nullptr);
    EXPECT_EQ(readLine(nullptr, &position), nullptr);

    // Without a position the first line comes back every time.
    auto two = heapBuffer("\nsecond\n");
    EXPECT_EQ(take(readLine(two.get(), nullptr)), "\n");
    EXPECT_EQ(take(readLine(two.get(), nullptr)), "\n");

    position = -5;
    EXPECT_EQ(readLine(two.get(), &position), nullptr);
    EXPECT_EQ(position, -5);
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
    ParseSectionField(" Key : a:b \n", &section);
    QString raw;
    ASSERT_EQ(section.getRawValue(L1(" key "), &raw), 0);
    EXPECT_EQ(raw, L1(" a:b \n"));

    ParseSectionField("no colon here", &section);
    EXPECT_EQ(section.count(), 1);
}

TEST(ParseSectionFieldDeathTest, NullSectionStopsWithANamedAssertion)
{
    EXPECT_DEATH(ParseSectionField("k:v", nullptr),
                 "section != nullptr.*ParseSectionField.*PLSectionScanner\\.cpp");
}
