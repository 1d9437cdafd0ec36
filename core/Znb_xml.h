// The five character entities of notice text. Adapters escape element text with XML_Encode's rules and
// the board reads it back with XML_Decode. Pure functions; any thread; never throw (bar allocation).
#pragma once

#include <array>
#include <string>
#include <string_view>

// Entities and the characters they stand for, in the order both routines apply them.
extern const std::array<std::string_view, 5> XMLEntities;   // "&amp;" "&lt;" "&gt;" "&quot;" "&apos;"
extern const std::array<std::string_view, 5> XMLCharacters; // "&" "<" ">" "\"" "'"

// Replaces, in table order and each everywhere, every character by its entity (case-sensitive).
std::string XML_Encode(std::string_view Text);

// Replaces, in table order and each everywhere, every entity by its character, ignoring letter case.
// "&amp;" goes first, so "&amp;lt;" decodes to "<"; senders rely on that order.
std::string XML_Decode(std::string_view Text);
