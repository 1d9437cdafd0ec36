// Method-pointer types of the adapter units.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

// A method taking a text and an integer. Declared for adapter code; the board itself does not use it.
using TStr_Int_Meth = std::function<void(const std::string&, int32_t)>;
