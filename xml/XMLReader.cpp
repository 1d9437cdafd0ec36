// The element reader. It works byte by byte in meaning: every decision below is the one a reader taking
// one byte at a time from the stream would make, including where it steps back and what it does at the
// end of the input. Message texts were written against these rules, so they are kept as they are; runs
// of bytes are scanned with pointers rather than one call per byte.
#include "xml/djlpXML.h"

#include "support/StrUtils.h"

#include <cstring>

namespace {

constexpr TCharSet NameStops(" />");
constexpr TCharSet EqualsStop("=");
constexpr TCharSet GreaterStop(">");
constexpr TCharSet OpenBracketStop("[");
constexpr TCharSet CloseBracketStop("]");

[[noreturn]] void Missing(char Found) {
    // The message quotes the character found, not the one expected: that is the wording readers know.
    std::string message = "Malformed XML.  Missing '";
    message += Found;
    message += '\'';
    throw EXMLReadError(message);
}

// The bytes in the element loop that need a decision; every other byte is skipped.
struct TLoopBytes {
    bool In[256] = {};
    constexpr TLoopBytes() {
        for (int c = 0; c <= ' '; ++c)
            In[c] = true;
        In[static_cast<unsigned char>('/')] = In[static_cast<unsigned char>('<')] = true;
        In[static_cast<unsigned char>('>')] = true;
    }
};
constexpr TLoopBytes LoopBytes;

// Counts the elements being read; refuses nesting beyond MaxXMLNestingDepth.
class TDepthGuard {
public:
    explicit TDepthGuard(TXMLStream& Stream) : FDepth(Stream.Depth()) {
        if (FDepth >= MaxXMLNestingDepth)
            throw EXMLReadError("Malformed XML.  Elements nested deeper than " +
                                std::to_string(MaxXMLNestingDepth));
        ++FDepth;
    }
    ~TDepthGuard() { --FDepth; }
    TDepthGuard(const TDepthGuard&) = delete;
    TDepthGuard& operator=(const TDepthGuard&) = delete;

private:
    int32_t& FDepth;
};

} // namespace

namespace {

// ReadChar without an expected byte, inlined into the element loop: it runs once per markup byte.
inline char TakeChar(TXMLStream& Stream) {
    char c = '\0';
    const char* p = Stream.Cursor();
    if (p < Stream.End()) {
        c = *p;
        Stream.MoveTo(p + 1);
    }
    return static_cast<unsigned char>(c) < 32 ? ' ' : c;
}

} // namespace

char ReadChar(TXMLStream& Stream, char Expected) {
    const char c = TakeChar(Stream);
    if (Expected != '\0' && c != Expected) Missing(c);
    return c;
}

char NextChar(TXMLStream& Stream, char Expected) {
    char c;
    do {
        c = TakeChar(Stream);
    } while (c == ' ' && !Stream.AtEnd());
    // At the end the result is no character, even when the last byte was a real one; relied upon.
    if (Stream.AtEnd()) c = '\0';
    if (Expected != '\0' && c != Expected) Missing(c);
    return c;
}

// The byte-wise rule: read a byte; while not at the end and the byte is no stop byte, keep it and read
// the next; then step back one. So the last byte of the input is never kept, and the stream is left on
// the stop byte (or the last byte). Past the end nothing was read, so nothing is stepped back: stepping
// back over an unread byte would read the same byte again forever.
std::string ReadUntil(const TCharSet& StopSet, TXMLStream& Stream) {
    const char* p = Stream.Cursor();
    const char* end = Stream.End();
    if (p >= end) return {};
    const char* last = end - 1;
    const char* q = p;
    while (q < last && !StopSet.Contains(*q))
        ++q;
    Stream.MoveTo(q);
    return std::string(p, q);
}

namespace {

// ReadUntil for a single stop byte, with memchr.
std::string_view ScanUntil(char Stop, TXMLStream& Stream) {
    const char* p = Stream.Cursor();
    const char* end = Stream.End();
    if (p >= end) return {};
    const char* last = end - 1;
    const char* q = static_cast<const char*>(std::memchr(p, Stop, static_cast<size_t>(last - p)));
    if (!q) q = last;
    Stream.MoveTo(q);
    return std::string_view(p, static_cast<size_t>(q - p));
}

} // namespace

void TXMLNode::ReadFromStream(TXMLStream& Stream) {
    TDepthGuard depth(Stream);
    Clear();               // attributes are kept; the text only changes when text is read
    ReadChar(Stream, '<'); // no whitespace is skipped before an element
    FName = ReadUntil(NameStops, Stream);
    bool inStartTag = true;
    while (!Stream.AtEnd()) {
        const char* at = Stream.Cursor();
        switch (TakeChar(Stream)) {
        case ' ':
            if (inStartTag) ReadProperty(Stream);
            break;
        case '/':
            ReadChar(Stream, '>'); // an empty-element end must follow at once
            return;
        case '<':
            if (TakeChar(Stream) == '/') {
                ReadEndTag(Stream);
                return;
            }
            Stream.MoveTo(at); // back to the '<' the child starts from
            ReadChild(Stream);
            break;
        case '>':
            inStartTag = false;
            ReadText(Stream);
            break;
        default: {
            // Anything else is skipped, also text after a child element: only the first text counts.
            const char* p = Stream.Cursor();
            const char* end = Stream.End();
            while (p < end && !LoopBytes.In[static_cast<unsigned char>(*p)])
                ++p;
            Stream.MoveTo(p);
            break;
        }
        }
    }
}

void TXMLNode::ReadProperty(TXMLStream& Stream) {
    std::string name = ReadUntil(EqualsStop, Stream);
    if (name.empty()) throw EXMLReadError("Malformed XML.  Missing property name");
    name = Trim(name);
    NextChar(Stream, '=');
    NextChar(Stream, '"'); // only the double quote delimits values
    const std::string_view value = ScanUntil('"', Stream);
    ReadChar(Stream, '"');
    SetValue(name, value); // stored escaped; entity references are not decoded here
}

void TXMLNode::ReadText(TXMLStream& Stream) {
    const std::string_view text = TrimView(ScanUntil('<', Stream));
    const bool oneLine = !text.empty() && !std::memchr(text.data(), '\n', text.size()) &&
                         !std::memchr(text.data(), '\r', text.size());
    if (oneLine) {
        FContents.Clear();
        FContents.Add(std::string(text));
    } else {
        FContents.SetText(text);
    }
}

void TXMLNode::ReadEndTag(TXMLStream& Stream) {
    const std::string_view found = ScanUntil('>', Stream);
    if (found != FName) {
        std::string message = "Element end mismatch.  Looking for " + FName + " found ";
        message += found;
        throw EXMLReadError(message);
    }
    TakeChar(Stream);
}

void TCDATAXMLNode::ReadFromStream(TXMLStream& Stream) {
    Clear();
    ReadChar(Stream, '<');
    std::string s = ReadUntil(OpenBracketStop, Stream);
    if (s != "!") throw EAssertionFailed("Assertion failed: character data must begin with \"<![\"");
    s += TakeChar(Stream);
    s += ReadUntil(OpenBracketStop, Stream);
    s += TakeChar(Stream);
    if (s != "![CDATA[")
        throw EAssertionFailed("Assertion failed: character data must begin with \"<![CDATA[\"");
    SetData(ReadUntil(CloseBracketStop, Stream)); // the data ends at the first ']'
    // Skips the rest of "]]"; the final '>' stays for the parent, where it starts a text read.
    ReadUntil(GreaterStop, Stream);
}
