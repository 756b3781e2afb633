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

// The ampersand first, so that "&lt;" is kept as text; tabs and line breaks stay as they are.
TEST(XMLWriter, ProtectEscapesTheAmpersandFirst)
{
    const QString text = QString::fromUtf8("a<b & 'c' \"x\" > y &lt;\n\t\xc3\xa9\xe2\x82\xac");
    EXPECT_EQ(written([&](CPLXMLWriter& w) { w.writeString(text); }),
              "a&lt;b &amp; &apos;c&apos; &quot;x&quot; &gt; y &amp;lt;\n\t\xc3\xa9\xe2\x82\xac");
}

// In an attribute a tab and line breaks become character references, which a reader keeps;
// element text keeps tabs and LF and writes a CR as a reference, which a reader keeps too.
TEST(XMLWriter, TabsAndLineBreaksSurviveInAttributesAndText)
{
    const QString text = L1("a\tb\nc\rd<");
    AttrMap attrs;
    attrs.insert(L1("v"), text);
    EXPECT_EQ(
        written([&](CPLXMLWriter& w) {
            w.writeTaggedString(L1("t"), text, attrs);
            w.writeAtomTag(L1("e"), attrs);
        }),
        "<t v=\"a&#9;b&#10;c&#13;d&lt;\">a\tb\nc&#13;d&lt;</t><e v=\"a&#9;b&#10;c&#13;d&lt;\"/>");
    // protect() alone is unchanged.
    CPLXMLWriter writer(nullptr, nullptr);
    EXPECT_EQ(writer.protect(text), L1("a\tb\nc\rd&lt;"));

    EXPECT_TRUE(
        CPLXMLWriter::isXmlText(L1("\t\n\r x\x7f\x80") + QString::fromUtf8("\xf0\x9f\x98\x80")));
    EXPECT_EQ(CPLXMLWriter::nonXmlCharacter(L1("ab\x0b")), 2);
    EXPECT_EQ(CPLXMLWriter::nonXmlCharacter(L1("a") + QChar(0)), 1);
    EXPECT_EQ(CPLXMLWriter::nonXmlCharacter(QString(QChar(0xfffd)) + QChar(0xffff)), 1);
    EXPECT_EQ(CPLXMLWriter::nonXmlCharacter(QString(QChar(0xd83d)) + L1("x")), 0);
    EXPECT_EQ(CPLXMLWriter::nonXmlCharacter(L1("x") + QChar(0xde00)), 1);
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

// Text written after a line break takes the place of the indentation; an end tag without its
// start tag leaves the depth at 0.
TEST(XMLWriter, IndentsOnlyAfterNewLine)
{
    EXPECT_EQ(written([](CPLXMLWriter& w) {
                  w.writeCloseTag(L1("x"));
                  w.newLine();
                  w.writeOpenTag(L1("a"));
                  w.newLine();
                  w.writeOpenTag(L1("b"));
                  w.writeAtomTag(L1("c"));
                  w.newLine();
                  w.writeTaggedString(L1("d"), L1("x"));
                  w.newLine();
                  w.writeString(L1("text"));
                  w.writeCloseTag(L1("b"));
                  w.newLine();
                  w.writeCloseTag(L1("a"));
                  w.newLine();
              }),
              "</x>\n<a>\n    <b><c/>\n        <d>x</d>\ntext</b>\n</a>\n");
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
