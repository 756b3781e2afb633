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

QString rawValue(const CPLSection& section, const char* key)
{
    QString raw;
    EXPECT_EQ(section.getRawValue(L1(key), &raw), PL_SUCCESS) << key;
    return raw;
}

QStringList keys(const CPLSection& section)
{
    QStringList list;
    section.getKeyList(&list);
    return list;
}

// A typed value of the key; the starting value -1 shows whether the getter wrote one.
template<typename T> T typed(const CPLSection& section, const char* key)
{
    T value = T(-1);
    EXPECT_EQ(section.getValue(L1(key), &value), PL_SUCCESS) << key;
    return value;
}

} // namespace

TEST(SectionInlineComments, PlainGettersDropTheCommentRawGettersKeepIt)
{
    CPLSection section = loaded("Exposure:\t10 #seconds\nPlain:\t7\n");
    EXPECT_EQ(section[L1("Exposure")], L1("10"));
    EXPECT_EQ(rawValue(section, "Exposure"), L1("10 #seconds"));
    QStringList values;
    section.getValueList(&values);
    EXPECT_EQ(values, (QStringList { L1("10"), L1("7") }));
    section.getRawValueList(&values);
    EXPECT_EQ(values, (QStringList { L1("10 #seconds"), L1("7") }));

    // Setting keeps an existing comment; a new value with a comment of its own replaces it.
    ASSERT_EQ(section.setValue(L1("Exposure"), L1("20")), PL_SUCCESS);
    EXPECT_EQ(rawValue(section, "Exposure"), L1("20\t#seconds"));
    ASSERT_EQ(section.setValue(L1("Exposure"), L1("30 # minutes")), PL_SUCCESS);
    EXPECT_EQ(rawValue(section, "Exposure"), L1("30 # minutes"));
    // Typed setters go through the same path.
    ASSERT_EQ(section.setValue(L1("Exposure"), 2.5), PL_SUCCESS);
    EXPECT_EQ(rawValue(section, "Exposure"), L1("2.500000\t# minutes"));
    ASSERT_EQ(section.setRawValue(L1("Exposure"), L1("5 #raw")), PL_SUCCESS);
    EXPECT_EQ(section[L1("exposure")], L1("5"));
}

TEST(SectionEntries, SettingNeverAddsAKeyAddingDoes)
{
    CPLSection section = loaded("Binning Factor:\t4\n");
    EXPECT_EQ(section.setValue(L1("Missing"), L1("x")), PL_KEY_NOT_FOUND);
    EXPECT_EQ(section.setValue(L1("Missing"), 3), PL_KEY_NOT_FOUND);
    EXPECT_EQ(section.setRawValue(L1("Missing"), L1("x")), PL_KEY_NOT_FOUND);
    EXPECT_EQ(section.count(), 1);

    EXPECT_EQ(section.addKeyValue(QString(), L1("x")), PL_EMPTY_KEY);
    EXPECT_EQ(section.addKeyValue(L1("Missing"), L1("x")), PL_SUCCESS);
    // Keys differ only in case: one entry, first spelling kept, last value stored.
    EXPECT_EQ(section.addKeyValue(L1("MISSING"), L1("y")), PL_SUCCESS);
    EXPECT_EQ(section.addKeyValue(L1("binning factor"), L1("8")), PL_SUCCESS);
    EXPECT_EQ(saved(section), L1("*** S:\t\r\nBinning Factor:\t8\nMissing:\ty\n\n"));
}

TEST(SectionEntries, RepeatedBodyKeysStandTwiceWithTheLastValue)
{
    CPLSection section = loaded("Gain:\t1\nOther:\tx\ngain:\t2\n");
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
    EXPECT_EQ(keys(section), (QStringList { L1("A"), L1("B") }));
    EXPECT_TRUE(section.isKeyPresent(L1("commentline 0")));
    EXPECT_EQ(section.getEntryKeys(),
              (QStringList { L1("CommentLine 0"), L1("CommentLine 1"), L1("A"), L1("CommentLine 2"),
                             L1("CommentLine 3"), L1("B") }));
    // A "#" is put in front of comment text that lacks one; an empty line stays empty.
    EXPECT_EQ(saved(section),
              L1("*** S:\t\r\n# heading\n#free text\nA:\t1\n#a # note: here\n\nB:\t2\n\n"));
}

TEST(SectionText, BodyIsTrimmedAndReadUpToItsFirstNul)
{
    // Outer blank lines go; inner ones stay as empty comment entries. NBSP (0xA0) and NEL
    // (0x85) are white space, as QString::trimmed() sees them.
    CPLSection section
        = loaded("\n\n  A:\t\2401\205\n\nB:\t2\n\n\n", "User Input", "(User Profile)");
    EXPECT_EQ(section[L1("A")], L1("1"));
    EXPECT_EQ(saved(section), L1("*** User Input:\t(User Profile)\r\nA:\t1\n\nB:\t2\n\n"));

    CPLSection cut(L1("S"), QString());
    const char body[] = "A:\t1\nB:\t2\0C:\t3\n";
    cut.loadSectionData(QLatin1String(body, sizeof body - 1));
    EXPECT_EQ(saved(cut), L1("*** S:\t\r\nA:\t1\nB:\t2\n\n"));
}

TEST(SectionText, Latin1BytesSurviveLoadAndSave)
{
    CPLSection section = loaded("Temp\351rature:\t37 \260C\n");
    EXPECT_EQ(section[QString::fromUtf8("Temp\303\251rature")], QString::fromUtf8("37 \302\260C"));
    EXPECT_EQ(saved(section).toLatin1(), QByteArray("*** S:\t\r\nTemp\351rature:\t37 \260C\n\n"));
}

TEST(SectionText, LineWithLeadingBlanksIsCutAtTheShiftedColonOffset)
{
    // The colon stands at offset 4 of "  ab:cdef"; offset 4 of the trimmed "ab:cdef" is "c".
    EXPECT_EQ(saved(loaded("First:\t1\n  ab:cdef\n")), L1("*** S:\t\r\nFirst:\t1\nab:c:\tef\n\n"));

    // Such lines, and keys reserved for comment lines, are told with their body line.
    CPLSection irregular = loaded("\n\nk:\tv\n  x:yz\ncommentline 2:\tv\n");
    const auto warnings = irregular.getLoadWarnings();
    ASSERT_EQ(warnings.size(), 2);
    EXPECT_EQ(warnings[0].kind(), CPLLoadWarning::ShiftedKey);
    EXPECT_EQ(warnings[0].line(), 4);
    EXPECT_EQ(warnings[1].kind(), CPLLoadWarning::CommentKey);
    EXPECT_EQ(warnings[1].line(), 5);
    // A vertical tab separates no tokens, so "\v*** k" was no header; trimmed, it would be.
    const auto header = loaded("\v*** k:\tv\n").getLoadWarnings();
    ASSERT_EQ(header.size(), 1);
    EXPECT_EQ(header[0].kind(), CPLLoadWarning::KeyLikeHeader);
    EXPECT_EQ(saved(irregular), L1("*** S:\t\r\nk:\tv\nx:y:\t\nv\n\n"));
}

TEST(SectionText, LoadingAgainAddsEntriesButSavesOnlyTheNewLineCount)
{
    CPLSection section = loaded("A:\t1\nB:\t2\n");
    section.loadSectionData(L1("C:\t3\n"));
    EXPECT_EQ(section.count(), 3);
    EXPECT_EQ(saved(section), L1("*** S:\t\r\nA:\t1\n\n"));
    section.clearKeyValuePairs();
    EXPECT_EQ(saved(section), L1("*** S:\t\r\n\n"));
}

TEST(SectionTyped, ConversionsAndFormats)
{
    CPLSection section = loaded("I:\t42 # c\nL:\t5000000000\nS:\t70000\nF:\t0.25\nD:\t-1.5e3\n"
                                "Text:\tabc\nMixed:\t12abc\n");
    EXPECT_EQ(typed<int>(section, "I"), 42);
    EXPECT_EQ(typed<long>(section, "L"), 5000000000L);
    EXPECT_EQ(typed<short>(section, "S"), 0); // out of range for a short
    EXPECT_FLOAT_EQ(typed<float>(section, "F"), 0.25f);
    EXPECT_DOUBLE_EQ(typed<double>(section, "D"), -1500.0);
    EXPECT_EQ(typed<int>(section, "Text"), 0);
    EXPECT_EQ(typed<int>(section, "Mixed"), 0);
    int i = 99;
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
    // Past the key/value entries but below all four entries: the entry at that index.
    QStringList found;
    for (int position = -1; position <= 4; ++position) {
        QString key = L1("-");
        found << QString::number(section.getKey(position, &key)) + L1(" ") + key;
    }
    const QString invalid = QString::number(PL_INVALID_ARGUMENT) + L1(" -");
    EXPECT_EQ(
        found,
        (QStringList { invalid, L1("0 A"), L1("0 B"), L1("0 CommentLine 1"), L1("0 B"), invalid }));
    EXPECT_EQ(section[1], L1("2"));
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
