// The BIFF8 record types the workbook writer uses, little-endian stores, and the growable buffer records
// are assembled in. Header-only; no state beyond a buffer's own.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>

namespace biff {

enum TRecordType : uint16_t {
    rtBOF = 0x0809,
    rtEOF = 0x000A,
    rtInterfaceHdr = 0x00E1,
    rtMms = 0x00C1,
    rtInterfaceEnd = 0x00E2,
    rtWriteAccess = 0x005C,
    rtCodePage = 0x0042,
    rtDsf = 0x0161,
    rtFnGroupCount = 0x009C,
    rtWindowProtect = 0x0019,
    rtProtect = 0x0012,
    rtPassword = 0x0013,
    rtProt4Rev = 0x01AF,
    rtProt4RevPass = 0x01BC,
    rtWindow1 = 0x003D,
    rtBackup = 0x0040,
    rtHideObj = 0x008D,
    rtDateMode = 0x0022,
    rtPrecision = 0x000E,
    rtRefreshAll = 0x01B7,
    rtBookBool = 0x00DA,
    rtFont = 0x0031,
    rtFormat = 0x041E,
    rtXF = 0x00E0,
    rtStyle = 0x0293,
    rtUsesElfs = 0x0160,
    rtBoundSheet = 0x0085,
    rtSst = 0x00FC,
    rtContinue = 0x003C,
    rtExtSst = 0x00FF,
    rtIndex = 0x020B,
    rtCalcMode = 0x000D,
    rtCalcCount = 0x000C,
    rtRefMode = 0x000F,
    rtIteration = 0x0011,
    rtDelta = 0x0010,
    rtSaveRecalc = 0x005F,
    rtPrintHeaders = 0x002A,
    rtPrintGridlines = 0x002B,
    rtGridSet = 0x0082,
    rtGuts = 0x0080,
    rtDefaultRowHeight = 0x0225,
    rtWsBool = 0x0081,
    rtDefColWidth = 0x0055,
    rtColInfo = 0x007D,
    rtDimensions = 0x0200,
    rtRow = 0x0208,
    rtLabel = 0x0204,
    rtLabelSst = 0x00FD,
    rtRk = 0x027E,
    rtNumber = 0x0203,
    rtDbCell = 0x00D7,
    rtWindow2 = 0x023E,
};

// The most data bytes one record holds; longer data continues in CONTINUE records.
constexpr uint16_t MaxRecordData = 8224;

inline void Put16(uint8_t* p, uint16_t v) {
    p[0] = static_cast<uint8_t>(v);
    p[1] = static_cast<uint8_t>(v >> 8);
}

inline void Put32(uint8_t* p, uint32_t v) {
    p[0] = static_cast<uint8_t>(v);
    p[1] = static_cast<uint8_t>(v >> 8);
    p[2] = static_cast<uint8_t>(v >> 16);
    p[3] = static_cast<uint8_t>(v >> 24);
}

inline void PutDouble(uint8_t* p, double v) {
    std::memcpy(p, &v, 8); // IEEE 754 in the host's order, little-endian on every target we build
}

// Bytes appended at the end, growing as needed; cleared for reuse without giving memory back.
class TBiffBuffer {
public:
    uint8_t* Extend(size_t n) {
        if (FSize + n > FCapacity) Grow(FSize + n);
        uint8_t* p = FData.get() + FSize;
        FSize += n;
        return p;
    }
    // A record of Type with Length data bytes; returns where the data goes.
    uint8_t* Record(uint16_t Type, uint16_t Length) {
        uint8_t* p = Extend(4u + Length);
        Put16(p, Type);
        Put16(p + 2, Length);
        return p + 4;
    }
    void Record16(uint16_t Type, uint16_t Value) { Put16(Record(Type, 2), Value); }
    void Append(const void* Data, size_t n) { std::memcpy(Extend(n), Data, n); }
    const uint8_t* Data() const { return FData.get(); }
    size_t Size() const { return FSize; }
    void Clear() { FSize = 0; }

private:
    void Grow(size_t need) {
        size_t cap = FCapacity ? FCapacity * 2 : 4096;
        while (cap < need)
            cap *= 2;
        std::unique_ptr<uint8_t[]> data(new uint8_t[cap]);
        if (FSize) std::memcpy(data.get(), FData.get(), FSize);
        FData = std::move(data);
        FCapacity = cap;
    }

    std::unique_ptr<uint8_t[]> FData;
    size_t FSize = 0;
    size_t FCapacity = 0;
};

} // namespace biff
