// The load limits of PLStatus.h (sections, lines, XML elements): a text just over each is
// refused with PL_LIMIT_EXCEEDED and a message that names the count and the limit, before
// anything is built; a text at the limit loads. And a load that runs out of memory: status
// PL_OUT_OF_MEMORY, the document left empty and usable.

#include "PLClickInfo.h"
#include "PLSection.h"
#include "PLStatus.h"
#include "PLXMLReader.h"

#include <QByteArray>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <cstdio>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

QString L1(const char* text)
{
    return QString::fromLatin1(text);
}

// `sections` sections "*** <n>:" with `entries` entries "k<n>:\tb" each.
QByteArray sectionsText(int sections, int entries)
{
    QByteArray body;
    for (int j = 0; j < entries; ++j)
        body += "k" + QByteArray::number(j) + ":\tb\n";
    QByteArray text;
    text.reserve(sections * (10 + body.size()));
    for (int i = 0; i < sections; ++i)
        text += "*** " + QByteArray::number(i) + ":\n" + body;
    return text;
}

// One section of `lines` lines in all.
QByteArray linesText(int lines)
{
    QByteArray text("*** s:\n");
    text += QByteArray("a:\tb\n").repeated(lines - 1);
    return text;
}

struct Case
{
    const char* name;
    QByteArray text;
    int status;
    const char* message; // of getLastLimitText()
};

TEST(Limits, AFileJustOverALimitIsRefusedBeforeItIsBuiltAndOneAtTheLimitLoads)
{
    const Case cases[] = {
        { "sections over", sectionsText(PL_MAX_SECTIONS + 1, 0), PL_LIMIT_EXCEEDED,
          "100,001 sections, more than the 100,000 a document may hold" },
        { "sections at", sectionsText(PL_MAX_SECTIONS, 0), PL_SUCCESS, "" },
        { "lines over", linesText(PL_MAX_LINES + 1), PL_LIMIT_EXCEEDED,
          "3,000,001 lines, more than the 3,000,000 a document may hold" },
        // Blank lines count as lines: the load makes an entry of each.
        { "lines over, blank",
          "*** s:\n" + QByteArray("a:\tb\n\n").repeated(PL_MAX_LINES / 2 - 1) + "a:\tb\nc:\td\n",
          PL_LIMIT_EXCEEDED, "3,000,001 lines, more than the 3,000,000 a document may hold" },
        // Lines ended by CR LF or by a CR alone count as lines ended by LF.
        { "lines over, CR LF and CR",
          "*** s:\r\n" + QByteArray("a:\tb\r\nc:\td\r").repeated(PL_MAX_LINES / 2),
          PL_LIMIT_EXCEEDED, "3,000,001 lines, more than the 3,000,000 a document may hold" },
        { "lines at", linesText(PL_MAX_LINES), PL_SUCCESS, "" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CPLClickInfo document;
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(document.loadClickInfoBytes(c.text.constData(), c.text.size(), L1("big.txt")),
                  c.status);
        EXPECT_EQ(getLastLimitText(), L1(c.message));
        int count = -1;
        document.getSectionCount(&count);
        if (c.status == PL_SUCCESS) {
            EXPECT_GT(count, 0);
            continue;
        }
        // Refused after a count alone: nothing built, and in a fraction of a load's time.
        EXPECT_EQ(count, 0);
        EXPECT_EQ(document.getLastErrorLine(), 0);
        EXPECT_LT(timer.elapsed(), 5000);
    }
}

TEST(Limits, TextGivenAsTextIsCountedToo)
{
    CPLClickInfo document;
    const QByteArray text = sectionsText(PL_MAX_SECTIONS + 1, 0);
    EXPECT_EQ(document.loadTextBuffer(QString::fromLatin1(text)), PL_LIMIT_EXCEEDED);
    EXPECT_EQ(getLastLimitText(),
              L1("100,001 sections, more than the 100,000 a document may hold"));
    // The next load clears the record.
    EXPECT_EQ(document.loadTextBuffer(L1("*** a:\nk:\tv\n")), PL_SUCCESS);
    EXPECT_TRUE(getLastLimitText().isEmpty());
    EXPECT_EQ(getStatusText(PL_LIMIT_EXCEEDED), L1("the file holds more than the library loads"));
}

TEST(Limits, AnXmlFileOfMoreElementsThanTheLimitIsRefused)
{
    // The root and its children: PL_MAX_XML_ELEMENTS in all loads, one more does not.
    const auto xml = [](int elements) -> QByteArray {
        return "<r>" + QByteArray("<a/>").repeated(elements - 1) + "</r>";
    };
    CPLXMLReader reader;
    EXPECT_EQ(reader.loadXMLData(xml(PL_MAX_XML_ELEMENTS + 1)), PL_LIMIT_EXCEEDED);
    EXPECT_EQ(reader.getErrorMessage(),
              L1("1,000,001 elements, more than the 1,000,000 an XML file may hold"));
    EXPECT_TRUE(reader.getRootElement().isNull());
    EXPECT_EQ(reader.loadXMLData(xml(PL_MAX_XML_ELEMENTS)), PL_SUCCESS);
    EXPECT_EQ(reader.getRootElement().tagName(), L1("r"));
}

#ifndef OVPARSER_SANITIZE
// Runs `child` in a forked process whose address space may grow by `extra` bytes beyond what
// it holds when forked; its exit code, or 128 plus the signal that ended it.
template<typename Child> int inLimitedChild(rlim_t extra, Child child)
{
    const pid_t pid = fork();
    if (pid == 0) {
        unsigned long pages = 0;
        if (FILE* statm = std::fopen("/proc/self/statm", "r")) {
            if (std::fscanf(statm, "%lu", &pages) != 1)
                pages = 0;
            std::fclose(statm);
        }
        const rlim_t bytes = rlim_t(pages) * rlim_t(sysconf(_SC_PAGESIZE)) + extra;
        const rlimit limit { bytes, bytes };
        setrlimit(RLIMIT_AS, &limit);
        _exit(child());
    }
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
#endif

// A load that runs out of memory half way: 65, no section left behind (the sections built so
// far included, and those present before), and the document loads again afterwards. In a
// child, whose address space is too small for the sections of a large text though large
// enough for its bytes and its text.
TEST(Limits, ALoadThatRunsOutOfMemoryLeavesTheDocumentEmptyAndUsable)
{
#ifdef OVPARSER_SANITIZE
    GTEST_SKIP() << "the address sanitizer reserves more address space than RLIMIT_AS leaves";
#else
    const QByteArray big = sectionsText(PL_MAX_SECTIONS, 20);
    const QByteArray small("*** Small:\nKey:\tValue\n");
    // Room beyond what the process holds for a part of the load: a few sizes, so that the
    // failure falls at different places of it (the text, the sections, the check).
    int outOfMemory = 0;
    for (const rlim_t extra : { 8, 24, 48, 96, 160 }) {
        SCOPED_TRACE(extra);
        const int exit = inLimitedChild(extra << 20, [&] {
            CPLClickInfo document;
            if (document.loadClickInfoBytes(small.constData(), small.size(), QString()) != 0)
                return 10;
            const int status = document.loadClickInfoBytes(big.constData(), big.size(), QString());
            if (status == PL_SUCCESS)
                return 0; // enough memory after all: the sweep says so
            if (status != PL_OUT_OF_MEMORY)
                return 11;
            int count = -1;
            document.getSectionCount(&count);
            if (count != 0 || !document.getSectionKeys().isEmpty()
                || document.isSectionPresent(L1("0")) || document.isSectionPresent(L1("Small"))
                || !document.getLoadWarningList().isEmpty())
                return 12;
            if (document.loadClickInfoBytes(small.constData(), small.size(), QString()) != 0)
                return 13;
            QString value;
            if (document.getValue(L1("Small"), L1("Key"), &value) != 0 || value != L1("Value"))
                return 14;
            return 65;
        });
        EXPECT_TRUE(exit == 65 || exit == 0) << "the child ended with " << exit;
        outOfMemory += exit == 65;
    }
    EXPECT_GT(outOfMemory, 0) << "no load ran out of memory: the sizes tried are too large";
#endif
}

} // namespace
