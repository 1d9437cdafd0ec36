// The string library's token functions: one process-wide delimiter character and a double-quote-aware
// splitter. Positions are 1-based, as the filter file format and its readers count them.
// The current delimiter is shared by the whole process and is not guarded: board thread only. Callers that
// depend on a delimiter set it before every use (TFilter sets the byte 2 before each column access).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Makes Ch the current delimiter and returns true; the zero byte changes nothing and returns false.
// The delimiter is the double quote until first set.
bool SetDelimiter(char Ch);
char GetDelimiter();

// Where token N (from 1) of S begins: 1 for N = 1 when S is not empty, else just after the (N-1)-th
// delimiter; 0 when S is empty or has too few delimiters. An empty token's position is that of the
// delimiter that ends it (or one past the end of S for an empty last token).
int GetTokenPos(std::string_view S, int N);

// The token containing position Pos; empty when Pos is outside S or S[Pos] is a delimiter.
std::string GetToken(std::string_view S, int Pos);

// Replaces the token containing Pos by Token; when S[Pos] is a delimiter, Token is inserted before it.
// Pos outside S (below 1, beyond the end, S empty) changes nothing and returns false.
bool ReplaceToken(std::string& S, std::string_view Token, int Pos);

// Splits S at any byte of Delim, starting at Index (in-out). Stretches between double quotes are skipped,
// so an odd number of quotes hides the following delimiters. Found at P: Token = S[Index..P-1], Index = P+1.
// Not found: Token = the rest, Index = 0. Index outside S or Delim empty: Token empty, Index = 0.
void Parse(std::string_view S, std::string_view Delim, int& Index, std::string& Token);

// Upper-case hexadecimal text to a 32-bit value. Bytes below '0' are skipped; a byte beyond 'F' (lower-case
// letters included) ends the conversion; ':' to '@' count as the digits 3 to 9. Empty text gives 0.
uint32_t HexToInt(std::string_view S);
