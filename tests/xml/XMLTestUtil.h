// Shared checks for the XML tests.
#pragma once

#include "xml/djlpXML.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

// Parses Text and returns the exception's "ClassName: Message", or "" when the parse succeeded.
inline std::string ParseError(std::string_view Text) {
    try {
        TXMLNode node(Text);
    } catch (const Exception& e) {
        return std::string(e.ClassName()) + ": " + e.Message();
    }
    return "";
}

inline std::unique_ptr<TXMLNode> Parse(std::string_view Text) {
    return std::make_unique<TXMLNode>(Text);
}
