#include "PLSection.h"
#include "PLStatus.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

namespace {

CPLSection loaded(const char* body, const char* key = "S", const char* name = "")
{
    CPLSection section(L1(key), L1(name));
    section.loadSectionData(L1(body));
    return section;
}

QString saved(const CPLSection& section)
{
    QString text;
    section.saveSectionData(text);
    return text;
}

} // namespace

TEST(SectionInlineComments, PlainGettersDropTheCommentRawGettersKeepIt)
{
    CPLSection section = loaded("Exposure:\t10 #seconds\nPlain:\t7\n");
    QString value;
    ASSERT_EQ(section.getValue(L1("Exposure"), &value), PL_SUCCESS);
    EXPECT_EQ(value, L1("10"));
    ASSERT_EQ(section.getRawValue(L1("Exposure"), &value), PL_SUCCESS);
    EXPECT_EQ(value, L1("10 #seconds"));
    EXPECT_EQ(section[L1("exposure")], L1("10"));

    QStringList values;
    section.getValueList(&values);
    EXPECT_EQ(values, (QStringList { L1("10"), L1("7") }));
    section.getRawValueList(&values);
    EXPECT_EQ(values, (QStringList { L1("10 #seconds"), L1("7") }));
}

TEST(SectionInlineComments, SetValueKeepsAnExistingComment)
{
    CPLSection section = loaded("Exposure:\t10 #seconds\nPlain:\t7\n");
    QString raw;
    ASSERT_EQ(section.setValue(L1("Exposure"), L1("20")), PL_SUCCESS);
    section.getRawValue(L1("Exposure"), &raw);
    EXPECT_EQ(raw, L1("20\t#seconds"));

    // A new value with a comment of its own replaces the whole value.
    ASSERT_EQ(section.setValue(L1("Exposure"), L1("30 # minutes")), PL_SUCCESS);
    section.getRawValue(L1("Exposure"), &raw);
    EXPECT_EQ(raw, L1("30 # minutes"));

    // Typed setters go through the same path.
    ASSERT_EQ(section.setValue(L1("Exposure"), 2.5), PL_SUCCESS);
    section.getRawValue(L1("Exposure"), &raw);
    EXPECT_EQ(raw, L1("2.500000\t# minutes"));

    ASSERT_EQ(section.setRawValue(L1("Exposure"), L1("5 #raw")), PL_SUCCESS);
    EXPECT_EQ(section[L1("Exposure")], L1("5"));
}

TEST(SectionEntries, SettingNeverAddsAKeyAddingDoes)
{
    CPLSection section = loaded("Binning Factor:\t4\n");
    EXPECT_EQ(section.setValue(L1("Missing"), L1("x")), PL_KEY_NOT_FOUND);
    EXPECT_EQ(section.setValue(L1("Missing"), 3), PL_KEY_NOT_FOUND);
    EXPECT_EQ(section.setRawValue(L1("Missing"), L1("x")), PL_KEY_NOT_FOUND);
    EXPECT_FALSE(section.isKeyPresent(L1("Missing")));
    EXPECT_EQ(section.count(), 1);

    EXPECT_EQ(section.addKeyValue(QString(), L1("x")), PL_EMPTY_KEY);
    EXPECT_EQ(section.addKeyValue(L1("Missing"), L1("x")), PL_SUCCESS);
    // Keys differ only in case: one entry, first spelling kept, last value stored.
    EXPECT_EQ(section.addKeyValue(L1("MISSING"), L1("y")), PL_SUCCESS);
    EXPECT_EQ(section.addKeyValue(L1("binning factor"), L1("8")), PL_SUCCESS);
    QStringList keys;
    section.getKeyList(&keys);
    EXPECT_EQ(keys, (QStringList { L1("Binning Factor"), L1("Missing") }));
    EXPECT_EQ(section[L1("missing")], L1("y"));
    EXPECT_EQ(saved(section), L1("*** S:\t\r\nBinning Factor:\t8\nMissing:\ty\n\n"));
}

TEST(SectionEntries, RepeatedBodyKeysStandTwiceWithTheLastValue)
{
    CPLSection section = loaded("Gain:\t1\nOther:\tx\ngain:\t2\n");
    QStringList keys;
    section.getKeyList(&keys);
    EXPECT_EQ(keys, (QStringList { L1("Gain"), L1("Other"), L1("gain") }));
    EXPECT_EQ(section[L1("Gain")], L1("2"));
    EXPECT_EQ(section.count(), 3);
    EXPECT_EQ(saved(section), L1("*** S:\t\r\nGain:\t2\nOther:\tx\ngain:\t2\n\n"));
}

TEST(SectionEntries, CommentLinesAreKeptInPlaceAndNotCounted)
{
    CPLSection section = loaded("# heading\nfree text\nA:\t1\na # note: here\n\nB:\t2\n");
    EXPECT_EQ(section.count(), 2);
    int count = -1;
    EXPECT_EQ(section.getKeyValuePairCount(&count), PL_SUCCESS);
    EXPECT_EQ(count, 2);
    QStringList keys;
    section.getKeyList(&keys);
    EXPECT_EQ(keys, (QStringList { L1("A"), L1("B") }));
    EXPECT_TRUE(section.isKeyPresent(L1("commentline 0")));
    EXPECT_EQ(section.getEntryKeys(),
              (QStringList { L1("CommentLine 0"), L1("CommentLine 1"), L1("A"), L1("CommentLine 2"),
                             L1("CommentLine 3"), L1("B") }));
    // A "#" is put in front of comment text that lacks one; an empty line stays empty.
    EXPECT_EQ(saved(section),
              L1("*** S:\t\r\n# heading\n#free text\nA:\t1\n#a # note: here\n\nB:\t2\n\n"));
}

TEST(SectionText, SavedBytesOfHeaderBodyAndEnd)
{
    CPLSection userInput(L1("User Input"), L1("(User Profile)"));
    userInput.addKeyValue(L1("User"), L1("kl"));
    EXPECT_EQ(saved(userInput), L1("*** User Input:\t(User Profile)\r\nUser:\tkl\n\n"));
    EXPECT_EQ(saved(CPLSection(L1("Graph Controls"), QString())),
              L1("*** Graph Controls:\t\r\n\n"));
}

TEST(SectionText, BodyIsTrimmedAndReadUpToItsFirstNul)
{
    // Outer blank lines go; inner ones stay as empty comment entries. NBSP (0xA0) and NEL
    // (0x85) are white space, as QString::trimmed() sees them.
    CPLSection section = loaded("\n\n  A:\t\xA0"
                                "1\x85\n\nB:\t2\n\n\n");
    EXPECT_EQ(section[L1("A")], L1("1"));
    EXPECT_EQ(saved(section), L1("*** S:\t\r\nA:\t1\n\nB:\t2\n\n"));

    CPLSection cut(L1("S"), QString());
    const char body[] = "A:\t1\nB:\t2\0C:\t3\n";
    cut.loadSectionData(QLatin1String(body, sizeof body - 1));
    QStringList keys;
    cut.getKeyList(&keys);
    EXPECT_EQ(keys, (QStringList { L1("A"), L1("B") }));
}

TEST(SectionText, Latin1BytesSurviveLoadAndSave)
{
    CPLSection section = loaded("Temp\xE9rature:\t37 \xB0"
                                "C\n");
    EXPECT_EQ(section[QString::fromUtf8("Temp\xC3\xA9rature")],
              QString::fromUtf8("37 \xC2\xB0"
                                "C"));
    EXPECT_EQ(saved(section).toLatin1(),
              QByteArray("*** S:\t\r\nTemp\xE9rature:\t37 \xB0"
                         "C\n\n"));
}

TEST(SectionText, LineWithLeadingBlanksIsCutAtTheShiftedColonOffset)
{
    // The colon stands at offset 4 of "  ab:cdef"; offset 4 of the trimmed "ab:cdef" is "c".
    CPLSection section = loaded("First:\t1\n  ab:cdef\n");
    QStringList keys;
    section.getKeyList(&keys);
    EXPECT_EQ(keys, (QStringList { L1("First"), L1("ab:c") }));
    EXPECT_EQ(section[L1("ab:c")], L1("ef"));

    // Such lines, and keys reserved for comment lines, are told with their body line.
    CPLSection irregular = loaded("\n\nk:\tv\n  x:yz\ncommentline 2:\tv\n");
    const auto lines = irregular.getIrregularLines();
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0].first, 4);
    EXPECT_EQ(lines[1].first, 5);
    // A vertical tab separates no tokens, so "\v*** k" was no header; trimmed, it would be.
    const auto header = loaded("\v*** k:\tv\n").getIrregularLines();
    ASSERT_EQ(header.size(), 1);
    EXPECT_TRUE(header[0].second.contains(L1("\"***\""))) << header[0].second.toStdString();
    EXPECT_EQ(saved(irregular), L1("*** S:\t\r\nk:\tv\nx:y:\t\nv\n\n"));
}

TEST(SectionText, LoadingAgainAddsEntriesButSavesOnlyTheNewLineCount)
{
    CPLSection section = loaded("A:\t1\nB:\t2\n");
    section.loadSectionData(L1("C:\t3\n"));
    EXPECT_EQ(section.count(), 3);
    EXPECT_EQ(saved(section), L1("*** S:\t\r\nA:\t1\n\n"));
    section.clearKeyValuePairs();
    EXPECT_EQ(section.count(), 0);
    EXPECT_EQ(saved(section), L1("*** S:\t\r\n\n"));
}

TEST(SectionTyped, ConversionsAndFormats)
{
    CPLSection section = loaded("I:\t42 # c\nL:\t5000000000\nS:\t70000\nF:\t0.25\nD:\t-1.5e3\n"
                                "Text:\tabc\nMixed:\t12abc\n");
    int i = -1;
    long l = -1;
    short s = -1;
    float f = -1;
    double d = -1;
    EXPECT_EQ(section.getValue(L1("I"), &i), PL_SUCCESS);
    EXPECT_EQ(i, 42);
    EXPECT_EQ(section.getValue(L1("L"), &l), PL_SUCCESS);
    EXPECT_EQ(l, 5000000000L);
    EXPECT_EQ(section.getValue(L1("S"), &s), PL_SUCCESS); // out of range for a short
    EXPECT_EQ(s, 0);
    EXPECT_EQ(section.getValue(L1("F"), &f), PL_SUCCESS);
    EXPECT_FLOAT_EQ(f, 0.25f);
    EXPECT_EQ(section.getValue(L1("D"), &d), PL_SUCCESS);
    EXPECT_DOUBLE_EQ(d, -1500.0);
    for (const char* key : { "Text", "Mixed" }) {
        i = -1;
        EXPECT_EQ(section.getValue(L1(key), &i), PL_SUCCESS);
        EXPECT_EQ(i, 0) << key;
    }
    i = 99;
    EXPECT_EQ(section.getValue(L1("Absent"), &i), PL_KEY_NOT_FOUND);
    EXPECT_EQ(i, 99);
    EXPECT_EQ(section.getValue(L1("I"), static_cast<int*>(nullptr)), PL_NULL_ARGUMENT);

    section.setValue(L1("I"), -7);
    section.setValue(L1("L"), 9000000000L);
    section.setValue(L1("S"), short(-3));
    section.setValue(L1("F"), 2.5f);
    section.setValue(L1("D"), 1e20);
    QStringList raw;
    section.getRawValueList(&raw);
    EXPECT_EQ(raw.mid(0, 5),
              (QStringList { L1("-7\t# c"), L1("9000000000"), L1("-3"), L1("2.500000"),
                             L1("100000000000000000000.000000") }));
}

TEST(SectionAccess, HeaderFieldsAndNullResults)
{
    CPLSection section(L1("Camera System Info"), L1("KORA 100 # bench unit"));
    QString text;
    EXPECT_EQ(section.getSectionName(&text), PL_SUCCESS);
    EXPECT_EQ(text, L1("KORA 100"));
    EXPECT_EQ(section.getSectionName(&text, true), PL_SUCCESS);
    EXPECT_EQ(text, L1("KORA 100 # bench unit"));
    EXPECT_EQ(section.getSectionName(nullptr), PL_INVALID_ARGUMENT);
    EXPECT_EQ(section.getSectionKey(nullptr), PL_INVALID_ARGUMENT);
    EXPECT_EQ(section.setSectionKey(QString()), PL_INVALID_ARGUMENT);
    EXPECT_EQ(section.setSectionKey(L1("")), PL_SUCCESS);
    EXPECT_EQ(section.getValue(L1("k"), static_cast<QString*>(nullptr)), PL_NULL_ARGUMENT);
    EXPECT_EQ(section.getValue(QString(), &text), PL_NULL_ARGUMENT);
    EXPECT_EQ(section.getKeyList(nullptr), PL_NULL_ARGUMENT);
    EXPECT_EQ(section.getKeyValuePairCount(nullptr), PL_NULL_ARGUMENT);
}

TEST(SectionAccess, PositionsCountKeyValueEntriesThenAllEntries)
{
    CPLSection section = loaded("# c0\nA:\t1\n# c1\nB:\t2\n");
    QString key;
    EXPECT_EQ(section.getKey(0, &key), PL_SUCCESS);
    EXPECT_EQ(key, L1("A"));
    EXPECT_EQ(section[1], L1("2"));
    // Past the key/value entries but below all four entries: the entry at that index.
    EXPECT_EQ(section.getKey(3, &key), PL_SUCCESS);
    EXPECT_EQ(key, L1("B"));
    EXPECT_EQ(section.getKey(2, &key), PL_SUCCESS);
    EXPECT_EQ(key, L1("CommentLine 1"));
    EXPECT_EQ(section.getKey(4, &key), PL_INVALID_ARGUMENT);
    EXPECT_EQ(section.getKey(-1, &key), PL_INVALID_ARGUMENT);
    EXPECT_TRUE(section[4].isNull());
}

TEST(SectionAccess, KeysByPrefixAndSubkey)
{
    CPLSection section
        = loaded("Lens fstop 1 steps:\t10\nLens fstop 2 steps:\t20\nLens fstop max:\t8\n"
                 "Filter:\t1\n");
    QStringList keys { L1("kept") };
    EXPECT_EQ(section.getKeylistFromKeyAndSubkey(L1("lens FSTOP"), L1("STEPS"), &keys), PL_SUCCESS);
    EXPECT_EQ(keys,
              (QStringList { L1("kept"), L1("Lens fstop 1 steps"), L1("Lens fstop 2 steps") }));
    keys.clear();
    section.getKeylistFromKeyAndSubkey(L1("Lens"), QString(), &keys);
    EXPECT_EQ(keys.size(), 3);
    EXPECT_EQ(section.getKeylistFromKeyAndSubkey(QString(), QString(), &keys), PL_NULL_ARGUMENT);
}

TEST(SectionAccess, RotatingHolderAnglePrefersTheNewKey)
{
    double angle = 0;
    EXPECT_EQ(loaded("MuVI Angle:\t15\nMVI-2 Angle:\t30\n").getMVIAngle(&angle), PL_SUCCESS);
    EXPECT_DOUBLE_EQ(angle, 30);
    EXPECT_EQ(loaded("MuVI Angle:\t15\n").getMVIAngle(&angle), PL_SUCCESS);
    EXPECT_DOUBLE_EQ(angle, 15);
    angle = 7;
    EXPECT_EQ(loaded("Other:\t1\n").getMVIAngle(&angle), PL_KEY_NOT_FOUND);
    EXPECT_DOUBLE_EQ(angle, 7);
}

TEST(SectionAccess, CopiesAreIndependent)
{
    CPLSection original = loaded("A:\t1\n", "Key", "Name");
    CPLSection copy(original);
    CPLSection assigned;
    assigned = original;
    original.setValue(L1("A"), L1("2"));
    original.setSectionName(L1("Changed"));
    EXPECT_EQ(copy[L1("A")], L1("1"));
    EXPECT_EQ(saved(assigned), L1("*** Key:\tName\r\nA:\t1\n\n"));
}
