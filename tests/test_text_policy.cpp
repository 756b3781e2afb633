// The text policy: what text can stand in a section's lines, judged alike by the section, the
// document, the in-place editor and ovtool, and what a load makes of a line that does not.

#include "PLClickInfo.h"
#include "PLFileEditor.h"
#include "PLSection.h"
#include "PLStatus.h"
#include "TestUtil.h"

#include <QProcess>
#include <QTemporaryDir>

#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace {

using Role = CPLSection::TextRole;
using Fault = CPLSection::TextFault;

const QByteArray BASE = "*** S:\tname\r\nk:\t1\n# a note\n\n\n\n";

std::unique_ptr<CPLClickInfo> loadedDocument(const QByteArray& bytes)
{
    auto document = std::make_unique<CPLClickInfo>();
    EXPECT_EQ(document->loadClickInfoBytes(bytes.constData(), bytes.size(), L1("t.txt")),
              PL_SUCCESS)
        << bytes.toStdString();
    return document;
}

// What one way of writing a text did: refused it, or wrote these bytes.
struct Outcome
{
    bool refused = false;
    QByteArray bytes;
};

Outcome documentOutcome(int status, const CPLClickInfo& document)
{
    return status != PL_SUCCESS ? Outcome { true, {} }
                                : Outcome { false, document.getClickInfoData().toLatin1() };
}

// Applies `change` to the document of `base` and says what it did.
Outcome throughDocument(const std::function<int(CPLClickInfo&)>& change,
                        const QByteArray& base = BASE)
{
    const auto document = loadedDocument(base);
    const int status = change(*document);
    return documentOutcome(status, *document);
}

// Applies `change` to a copy of section "S" of the document of `base`, then puts it back.
Outcome throughSection(const std::function<int(CPLSection&)>& change, const QByteArray& base = BASE)
{
    return throughDocument(
        [&](CPLClickInfo& document) {
            CPLSection section = *document[L1("S")];
            const int status = change(section);
            if (status == PL_SUCCESS) {
                document.removeSection(L1("S"));
                document.addSection(new CPLSection(section));
            }
            return status;
        },
        base);
}

Outcome throughEditor(const std::function<int(CPLFileEditor&)>& edit)
{
    CPLFileEditor editor(L1("t.txt"));
    EXPECT_EQ(editor.openBytes(BASE), PL_SUCCESS);
    return edit(editor) != PL_SUCCESS ? Outcome { true, {} }
                                      : Outcome { false, editor.editedBytes() };
}

// Runs `ovtool` on a copy of the base file in a folder of its own.
Outcome throughOvtool(const QStringList& arguments)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(L1("t.txt"));
    writeBytes(file, BASE);
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(L1("LC_ALL"), L1("C.UTF-8"));
    process.setProcessEnvironment(environment);
    process.start(L1(OVTOOL_PATH), QStringList { arguments.first(), file } + arguments.mid(1));
    EXPECT_TRUE(process.waitForFinished(60000));
    const int exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    EXPECT_TRUE(exitCode == 0 || exitCode == 7) << process.readAllStandardError().toStdString();
    const QByteArray bytes = readBytes(file);
    if (exitCode != 0) {
        EXPECT_EQ(bytes, BASE) << "a refused edit changed the file";
    }
    return { exitCode != 0, bytes };
}

// Whether the document that `bytes` load as holds `text` in `role`, read back as it was given
// (values and names trimmed, as reading does). Sections are "S" (name "name"), and "N" for a
// new section; keys "k", and "n" for a new key.
bool readsBack(const QByteArray& bytes, Role role, const QString& text)
{
    const auto loaded = loadedDocument(bytes);
    const CPLClickInfo& document = *loaded;
    QString read;
    switch (role) {
    case Role::SectionKey:
        return document[text] && document.getSectionKeys().contains(text);
    case Role::SectionName:
        for (const QString& key : document.getSectionKeys()) {
            if (key != L1("S") && document[key]->getSectionName(&read, true) == PL_SUCCESS)
                return read == text.trimmed();
        }
        return false;
    case Role::Key: {
        QStringList keys;
        return document[L1("S")] && document[L1("S")]->getKeyList(&keys) == PL_SUCCESS
            && keys == QStringList({ L1("k"), text });
    }
    case Role::Value:
    case Role::Comment:
        for (const char* key : { "k", "n" }) {
            for (const QString& section : { L1("S"), L1("N") }) {
                if (document.isSectionPresent(section)
                    && document[section]->getRawValue(L1(key), &read) == PL_SUCCESS
                    && read != L1("1"))
                    return read == text.trimmed();
            }
        }
        return false;
    }
    return false;
}

// Every way of writing `text` in `role`, each with its name.
QVector<QPair<QString, Outcome>> everyWay(Role role, const QString& text, bool viaOvtool)
{
    QVector<QPair<QString, Outcome>> ways;
    const auto add = [&](const char* name, const Outcome& outcome) {
        ways.append({ L1(name), outcome });
    };
    switch (role) {
    case Role::SectionKey:
        add("CPLSection::setSectionKey", throughDocument([&](CPLClickInfo& document) {
                auto section = std::make_unique<CPLSection>(L1("X"), L1("n"));
                const int status = section->setSectionKey(text);
                return status ? status : document.addSection(section.release());
            }));
        add("CPLClickInfo::addSection", throughDocument([&](CPLClickInfo& document) {
                auto section = std::make_unique<CPLSection>(text, L1("n"));
                const int status = document.addSection(section.get());
                if (status == PL_SUCCESS)
                    section.release();
                return status;
            }));
        add("CPLClickInfo::addNewSection", throughDocument([&](CPLClickInfo& document) {
                return document.addNewSection(text, L1("n")) ? PL_SUCCESS : PL_INVALID_ARGUMENT;
            }));
        add("CPLFileEditor::addKeyValue", throughEditor([&](CPLFileEditor& editor) {
                return editor.addKeyValue(text, L1("n"), L1("v"));
            }));
        if (viaOvtool)
            add("ovtool add", throughOvtool({ L1("add"), text, L1("n"), L1("v") }));
        break;
    case Role::SectionName:
        add("CPLSection::setSectionName", throughDocument([&](CPLClickInfo& document) {
                auto section = std::make_unique<CPLSection>(L1("N"), QString());
                const int status = section->setSectionName(text);
                return status ? status : document.addSection(section.release());
            }));
        add("CPLClickInfo::addSection", throughDocument([&](CPLClickInfo& document) {
                auto section = std::make_unique<CPLSection>(L1("N"), text);
                const int status = document.addSection(section.get());
                if (status == PL_SUCCESS)
                    section.release();
                return status;
            }));
        add("CPLClickInfo::addNewSection", throughDocument([&](CPLClickInfo& document) {
                return document.addNewSection(L1("N"), text) ? PL_SUCCESS : PL_INVALID_ARGUMENT;
            }));
        break;
    case Role::Key:
        add("CPLSection::addKeyValue", throughSection([&](CPLSection& section) {
                return section.addKeyValue(text, L1("v"));
            }));
        add("CPLFileEditor::addKeyValue", throughEditor([&](CPLFileEditor& editor) {
                return editor.addKeyValue(L1("S"), text, L1("v"));
            }));
        if (viaOvtool)
            add("ovtool add", throughOvtool({ L1("add"), L1("S"), text, L1("v") }));
        break;
    case Role::Value:
        add("CPLSection::setValue",
            throughSection([&](CPLSection& section) { return section.setValue(L1("k"), text); }));
        add("CPLSection::setRawValue", throughSection([&](CPLSection& section) {
                return section.setRawValue(L1("k"), text);
            }));
        add("CPLSection::addKeyValue", throughSection([&](CPLSection& section) {
                return section.addKeyValue(L1("n"), text);
            }));
        add("CPLClickInfo::setValue", throughDocument([&](CPLClickInfo& document) {
                return document.setValue(L1("S"), L1("k"), text);
            }));
        add("CPLFileEditor::setValue", throughEditor([&](CPLFileEditor& editor) {
                return editor.setValue(L1("S"), L1("k"), text);
            }));
        add("CPLFileEditor::addKeyValue", throughEditor([&](CPLFileEditor& editor) {
                return editor.addKeyValue(L1("N"), L1("n"), text);
            }));
        if (viaOvtool) {
            add("ovtool set", throughOvtool({ L1("set"), L1("S"), L1("k"), text }));
            add("ovtool add", throughOvtool({ L1("add"), L1("N"), L1("n"), text }));
        }
        break;
    case Role::Comment: // a comment entry's text: see below
        break;
    }
    return ways;
}

} // namespace

// Each text in each role, written every way the library and the tool offer: every way gives the
// same verdict, the one expected, and a text that is taken reads back as it was given (values
// and names trimmed).
TEST(TextPolicy, EveryWayGivesTheSameVerdictAndWhatIsTakenReadsBack)
{
    const QString nul = L1("a") + QChar(0) + L1("b");
    // The verdict in the roles section key, section name, key, value: 'x' refused, '.' taken.
    const struct
    {
        QString text;
        const char* verdicts;
    } cases[] = {
        { L1("Good text"), "...." },
        { L1("a\nb"), "xxxx" },
        { L1("a\rb"), "xxxx" },
        { nul, "xxxx" },
        { QString::fromUtf8("a\xc4\x80"
                            "b"),
          "xxxx" },
        { L1("a:b"), "x.x." },
        { L1("a # b"), "x.x." }, // a name or value keeps its inline comment
        { L1("*** X"), "..x." },
        { L1(" *** X"), "x.x." },
        { L1("\t*** X"), "x.x." },
        { L1("\v*** X"), "x.x." },
        { L1("\f*** X"), "x.x." },
        { L1("  ***"), "x.x." },
        { L1("** X"), "...." },
        { L1(" X"), "x.x." }, // a key would be cut at a shifted place, a section key trimmed
        { L1("CommentLine 3"), "..x." },
        { L1("commentline 3"), "..x." },
    };
    const Role roles[] = { Role::SectionKey, Role::SectionName, Role::Key, Role::Value };
    for (const auto& c : cases) {
        for (int r = 0; r < 4; ++r) {
            const bool refused = c.verdicts[r] == 'x';
            // Program arguments cannot hold a NUL.
            const auto ways = everyWay(roles[r], c.text, !c.text.contains(QChar(0)));
            for (const auto& way : ways) {
                const std::string what = way.first.toStdString() + " role " + std::to_string(r)
                    + " text \"" + c.text.toStdString() + '"';
                EXPECT_EQ(way.second.refused, refused) << what;
                if (!way.second.refused) {
                    EXPECT_TRUE(readsBack(way.second.bytes, roles[r], c.text))
                        << what << "\n"
                        << way.second.bytes.toStdString();
                }
            }
            // A document's section name is stored with its inline comment: a value's rules.
            const Role judged = roles[r] == Role::SectionName ? Role::Value : roles[r];
            EXPECT_EQ(CPLSection::breaksFile(c.text, judged), refused) << c.text.toStdString();
        }
    }
}

// A comment entry's text is written as a line of its own: it must read back as a comment.
TEST(TextPolicy, CommentTextMustReadBackAsAComment)
{
    const struct
    {
        const char* text;
        bool refused;
    } cases[] = {
        { "# another note", false }, { "", false },        { "  # indented", false },
        { "free text", true },       { "User:\tx", true }, { "*** Injected:\tx", true },
        { " *** Injected", true },   { "#a\nb", true },
    };
    // The comment stands between two keys (an empty line that ends a body is not read).
    const QByteArray base = "*** S:\tname\r\nk:\t1\n# a note\nm:\t2\n\n\n\n";
    for (const auto& c : cases) {
        const Outcome outcome = throughSection(
            [&](CPLSection& section) {
                return section.setRawValue(L1("CommentLine 0"), L1(c.text));
            },
            base);
        EXPECT_EQ(outcome.refused, c.refused) << c.text;
        EXPECT_EQ(CPLSection::breaksFile(L1(c.text), Role::Comment), c.refused) << c.text;
        if (!c.refused) {
            const auto document = loadedDocument(outcome.bytes);
            EXPECT_EQ((*document)[L1("S")]->getEntryValues(true),
                      (QStringList { L1("1"), L1(c.text).trimmed(), L1("2") }));
        }
    }
    // setValue() keeps the old comment after a new value: the stored text is what is judged.
    CPLSection section = *(*loadedDocument(BASE))[L1("S")];
    EXPECT_EQ(section.setValue(L1("CommentLine 0"), L1("User:")), PL_INVALID_ARGUMENT);
    EXPECT_EQ(section.getEntryValues(true), (QStringList { L1("1"), L1("# a note") }));
}

// The faults by name, in their order, and the words for the new ones.
TEST(TextPolicy, FaultsAreToldInTheirOrder)
{
    EXPECT_EQ(CPLSection::textFault(L1(" *** X"), Role::Key), Fault::HeaderStart);
    EXPECT_EQ(CPLSection::textFault(L1("\t***"), Role::Key), Fault::HeaderStart);
    EXPECT_EQ(CPLSection::textFault(L1("\v*** X"), Role::Key), Fault::ShiftedKey);
    EXPECT_EQ(CPLSection::textFault(L1(" CommentLine 1"), Role::Key), Fault::CommentKey);
    EXPECT_EQ(CPLSection::textFault(L1("Key "), Role::Key), Fault::OuterWhiteSpace);
    EXPECT_EQ(CPLSection::textFault(L1(" *** X"), Role::Value), Fault::OuterWhiteSpace);
    EXPECT_EQ(CPLSection::textFault(L1("*** X"), Role::Comment), Fault::NotComment);
    EXPECT_EQ(CPLSection::textFault(L1(" # x "), Role::Comment), Fault::OuterWhiteSpace);
    EXPECT_EQ(CPLSection::textFault(L1("a:b"), Role::Comment), Fault::NotComment);
    EXPECT_EQ(CPLSection::textFaultText(L1("\vA"), Role::Key),
              L1("the key \"\vA\" begins with white space, which moves the cut between key and "
                 "value"));
    EXPECT_EQ(CPLSection::textFaultText(L1(" *** X"), Role::Key),
              L1("the key \" *** X\" begins with \"***\" (after any blanks), which starts a "
                 "section header"));
    EXPECT_EQ(CPLSection::textFaultText(L1("x"), Role::Comment),
              L1("the comment \"x\" does not begin with \"#\", which a comment line does"));
}

// A vertical tab after a CR line end starts the next line with white space: that line is cut at
// the colon's offset in the untrimmed line, applied to the trimmed line (a quirk kept on
// purpose), so the key takes the colon. The key cannot be written back as it was read, and the
// text policy says why.
TEST(TextPolicy, AKeyTheShiftedCutGaveHoldsAColonAndIsTold)
{
    const QByteArray bytes = "*** User Input:\tU\r\nA:\t1\r\x0bTreatment:\tDrug\r\nB:\t2\r\n\r\n";
    const auto document = loadedDocument(bytes);
    const CPLSection* section = (*document)[L1("User Input")];
    ASSERT_TRUE(section);
    QStringList keys;
    section->getKeyList(&keys);
    EXPECT_EQ(keys, L1List({ "A", "Treatment:", "B" }));
    EXPECT_EQ((*section)[L1("Treatment:")], L1("Drug"));
    EXPECT_EQ(CPLSection::textFault(keys.at(1), Role::Key), Fault::Colon);
    EXPECT_TRUE(CPLSection::breaksFile(keys.at(1), Role::Key));
    EXPECT_EQ(CPLSection::textFaultText(keys.at(1), Role::Key),
              L1("the key \"Treatment:\" holds a colon, which ends a key"));
}
