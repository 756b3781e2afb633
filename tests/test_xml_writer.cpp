// CPLXMLWriter: the exact text of tags, escaping, attribute order, indentation, the XML
// declaration, and a device that takes fewer bytes than written.

#include "PLXMLWriter.h"
#include "TestUtil.h"

#include <QBuffer>
#include <QTextCodec>

#include <gtest/gtest.h>

#include <functional>

namespace {

// What `write` leaves on a buffer, through a writer without a codec unless one is given.
QByteArray written(const std::function<void(CPLXMLWriter&)>& write, QTextCodec* codec = nullptr)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        CPLXMLWriter writer(&buffer, codec);
        write(writer);
    }
    return buffer.data();
}

TEST(XMLWriter, ProtectEscapesTheAmpersandFirst)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    const CPLXMLWriter writer(&buffer, nullptr);
    const struct
    {
        const char* text;
        const char* escaped;
    } cases[] = {
        { "a<b & 'c'", "a&lt;b &amp; &apos;c&apos;" },
        { "&lt;", "&amp;lt;" },
        { "\"x\" > y", "&quot;x&quot; &gt; y" },
        { "line\nbreak\ttab", "line\nbreak\ttab" },
        { "", "" },
    };
    for (const auto& c : cases)
        EXPECT_EQ(writer.protect(L1(c.text)), L1(c.escaped)) << c.text;
    EXPECT_EQ(writer.protect(QString::fromUtf8("\xc3\xa9<\xe2\x82\xac")),
              QString::fromUtf8("\xc3\xa9&lt;\xe2\x82\xac"));
}

TEST(XMLWriter, TagsAndAttributesInNameOrder)
{
    AttrMap attrs;
    attrs.insert(L1("b"), L1("2"));
    attrs.insert(L1("a"), L1("<1>"));
    EXPECT_EQ(written([&](CPLXMLWriter& w) {
                  w.writeOpenTag(L1("r"), attrs);
                  w.writeAtomTag(L1("e"), attrs);
                  w.writeAtomTag(L1("x"));
                  w.writeTaggedString(L1("t"), L1("a&b"), attrs);
                  w.writeTaggedString(L1("empty"), QString());
                  w.writeString(L1("'"));
                  w.writeRaw(L1("<raw&>"));
                  w.writeCloseTag(L1("r"));
              }),
              "<r a=\"&lt;1&gt;\" b=\"2\"><e a=\"&lt;1&gt;\" b=\"2\"/><x/>"
              "<t a=\"&lt;1&gt;\" b=\"2\">a&amp;b</t><empty></empty>&apos;<raw&></r>");
}

TEST(XMLWriter, IndentsOnlyAfterNewLine)
{
    const std::function<void(CPLXMLWriter&)> steps[] = {
        [](CPLXMLWriter& w) { w.writeOpenTag(L1("a")); },
        [](CPLXMLWriter& w) { w.writeOpenTag(L1("b")); },
        [](CPLXMLWriter& w) { w.writeAtomTag(L1("c")); },
        [](CPLXMLWriter& w) { w.writeTaggedString(L1("d"), L1("x")); },
        [](CPLXMLWriter& w) { w.writeCloseTag(L1("b")); },
        [](CPLXMLWriter& w) { w.writeCloseTag(L1("a")); },
    };
    const auto nested = [&](CPLXMLWriter& w, bool lines) {
        for (const auto& step : steps) {
            step(w);
            if (lines)
                w.newLine();
        }
    };
    EXPECT_EQ(written([&](CPLXMLWriter& w) { nested(w, false); }), "<a><b><c/><d>x</d></b></a>");
    EXPECT_EQ(written([&](CPLXMLWriter& w) { nested(w, true); }),
              "<a>\n    <b>\n        <c/>\n        <d>x</d>\n    </b>\n</a>\n");
    // Text written after a line break takes the place of the indentation.
    EXPECT_EQ(written([](CPLXMLWriter& w) {
                  w.writeOpenTag(L1("a"));
                  w.newLine();
                  w.writeString(L1("text"));
                  w.writeAtomTag(L1("b"));
                  w.newLine();
                  w.writeAtomTag(L1("c"));
              }),
              "<a>\ntext<b/>\n    <c/>");
}

TEST(XMLWriter, CloseWithoutOpenStillWritesTheEndTag)
{
    EXPECT_EQ(written([](CPLXMLWriter& w) {
                  w.writeCloseTag(L1("x"));
                  w.newLine();
                  w.writeOpenTag(L1("y"));
                  w.newLine();
                  w.writeAtomTag(L1("z"));
              }),
              "</x>\n<y>\n    <z/>");
}

TEST(XMLWriter, DeclarationOnlyWithACodec)
{
    const auto body
        = [](CPLXMLWriter& w) { w.writeTaggedString(L1("t"), QString::fromUtf8("\xc3\xa9")); };
    EXPECT_EQ(written(body, QTextCodec::codecForName("UTF-8")),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<t>\xc3\xa9</t>");
    EXPECT_EQ(written(body, QTextCodec::codecForName("ISO-8859-1")),
              "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<t>\xe9</t>");
    // Without a codec: UTF-8 and no declaration.
    EXPECT_EQ(written(body), "<t>\xc3\xa9</t>");
}

TEST(XMLWriter, AFailedWriteIsReported)
{
    for (const qint64 capacity : { 0, 5, 30 }) {
        LimitedDevice device(capacity);
        CPLXMLWriter writer(&device, nullptr);
        writer.writeTaggedString(L1("element"), QString(40, QLatin1Char('x')));
        EXPECT_FALSE(writer.flush()) << capacity;
        EXPECT_TRUE(writer.hasError()) << capacity;
        EXPECT_LE(device.written.size(), capacity);
    }
    LimitedDevice roomy(100);
    CPLXMLWriter writer(&roomy, nullptr);
    writer.writeTaggedString(L1("element"), L1("x"));
    EXPECT_TRUE(writer.flush());
    EXPECT_EQ(roomy.written, "<element>x</element>");
}

} // namespace
