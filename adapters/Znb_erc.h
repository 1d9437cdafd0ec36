// The messages of the adapter status codes.
#pragma once

#include <cstdint>
#include <string>

// The board's message for an adapter status code (0 gives "Operation OK"); for a code outside the table,
// including 43001, the system's text for that code. Any thread; never throws.
std::string Get_ZNB_Error_Message(int32_t code);
