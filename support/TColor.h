// Colours as the board's files store them: 0x00BBGGRR for a plain colour (blue in the high byte), or
// 0x80000000 plus a system-colour index for a colour of the user's desktop theme, which the window layer
// maps to its palette. Display files write them in upper-case hexadecimal ("C0C0C0", "80000018").
#pragma once

#include <cstdint>

using TColor = uint32_t;

constexpr TColor clBlack = 0x000000;
constexpr TColor clSilver = 0xC0C0C0;
constexpr TColor clBlue = 0xFF0000; // blue is the high byte of 0x00BBGGRR
constexpr TColor clWhite = 0xFFFFFF;

constexpr TColor SystemColorBase = 0x80000000;
constexpr TColor clWindow = SystemColorBase + 5;   // window background
constexpr TColor clBtnFace = SystemColorBase + 15; // face of buttons and disabled edit boxes
constexpr TColor clInfoBk = SystemColorBase + 24;  // tool-tip background (0x80000018)

constexpr bool IsSystemColor(TColor c) {
    return (c & SystemColorBase) != 0;
}
constexpr int SystemColorIndex(TColor c) {
    return static_cast<int>(c & 0xFF);
}
constexpr TColor RGBColor(int red, int green, int blue) {
    return static_cast<TColor>((blue & 0xFF) << 16 | (green & 0xFF) << 8 | (red & 0xFF));
}
constexpr int RedOf(TColor c) {
    return c & 0xFF;
}
constexpr int GreenOf(TColor c) {
    return (c >> 8) & 0xFF;
}
constexpr int BlueOf(TColor c) {
    return (c >> 16) & 0xFF;
}
