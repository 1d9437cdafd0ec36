// The writer: one unbroken run of text (no line breaks, indentation or declaration), values and text
// percent-escaped, element names optionally encoded. It never decodes what it writes.
#include "xml/djlpXML.h"

#include "support/StrUtils.h"

namespace {

// Bytes written as they are by the percent escape: space ! $ ' ( ) * - . 0-9 @ A-Z a-z _
struct TPlainBytes {
    bool In[256] = {};
    constexpr TPlainBytes() {
        for (char c : std::string_view(" !$'()*-.@_"))
            In[static_cast<unsigned char>(c)] = true;
        for (int c = '0'; c <= '9'; ++c)
            In[c] = true;
        for (int c = 'A'; c <= 'Z'; ++c)
            In[c] = In[c + ('a' - 'A')] = true;
    }
};
constexpr TPlainBytes PlainBytes;

constexpr char HexDigits[] = "0123456789abcdef";

bool IsLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

void AppendEncodedName(std::string& Out, const std::string& Name, bool Encode) {
    if (!Encode) {
        Out += Name;
        return;
    }
    for (size_t i = 0; i < Name.size(); ++i) {
        const char c = Name[i];
        bool keep = IsLetter(c) || c == '_' || c == ':';
        if (i > 0) keep = keep || c == '-' || c == '.' || (c >= '0' && c <= '9');
        if (keep) {
            Out += c;
        } else {
            Out += "__ZS_ASCII_P__";
            Out += std::to_string(static_cast<unsigned char>(c));
            Out += "__ZS_ASCII_S__";
        }
    }
}

} // namespace

// "%" and two lower-case hex digits for every byte outside the plain set, up to the first zero byte.
std::string PercentEscape(std::string_view Text) {
    std::string out;
    out.reserve(Text.size());
    for (char c : Text) {
        if (c == '\0') break;
        const auto b = static_cast<unsigned char>(c);
        if (PlainBytes.In[b]) {
            out += c;
        } else {
            out += '%';
            out += HexDigits[b >> 4];
            out += HexDigits[b & 15];
        }
    }
    return out;
}

std::string EncodeXMLName(const std::string& Name) {
    std::string out;
    AppendEncodedName(out, Name, true);
    return out;
}

void TXMLNode::WriteToStream(std::string& Stream) const {
    Stream += '<';
    AppendEncodedName(Stream, FName, FEncodeName);
    for (int32_t i = 0; i < FProperties.Count(); ++i) {
        const std::string name = FProperties.Names(i);
        Stream += ' ';
        Stream += name; // attribute names go out as stored
        Stream += "=\"";
        Stream += PercentEscape(FProperties.Values(name));
        Stream += '"';
    }
    if (FChildren.empty()) {
        if (FContents.Empty()) {
            Stream += EmptyElementClose();
            return;
        }
        Stream += '>';
        Stream += PercentEscape(Trim(FContents.Text()));
        Stream += "</";
        AppendEncodedName(Stream, FName, FEncodeName);
        Stream += '>';
        return;
    }
    Stream += '>';
    if (!FContents.Empty()) Stream += PercentEscape(Trim(FContents.Text()));
    for (const auto& slot : FChildren)
        slot.Node->WriteToStream(Stream);
    Stream += "</";
    AppendEncodedName(Stream, FName, FEncodeName);
    Stream += '>';
}
