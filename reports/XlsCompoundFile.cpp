#include "reports/XlsCompoundFile.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

constexpr uint32_t SectorSize = 512;
constexpr uint32_t EntriesPerSector = SectorSize / 4;
constexpr uint32_t HeaderDifatEntries = 109;
constexpr uint32_t FreeSect = 0xFFFFFFFF;
constexpr uint32_t EndOfChain = 0xFFFFFFFE;
constexpr uint32_t FatSect = 0xFFFFFFFD;
constexpr uint32_t DifSect = 0xFFFFFFFC;
constexpr uint32_t NoStream = 0xFFFFFFFF;
// Streams below this size belong in the mini stream; the workbook is padded up to it instead.
constexpr uint32_t MiniStreamCutoff = 4096;

void Put16(uint8_t* p, uint16_t v) {
    p[0] = static_cast<uint8_t>(v);
    p[1] = static_cast<uint8_t>(v >> 8);
}

void Put32(uint8_t* p, uint32_t v) {
    for (int i = 0; i < 4; ++i)
        p[i] = static_cast<uint8_t>(v >> (8 * i));
}

uint32_t CeilDiv(uint64_t a, uint64_t b) {
    return static_cast<uint32_t>((a + b - 1) / b);
}

void DirectoryEntry(uint8_t* e, const char* Name, uint8_t Type, uint32_t Child, uint32_t Start,
                    uint32_t Size) {
    const size_t len = std::strlen(Name);
    for (size_t i = 0; i < len; ++i)
        Put16(e + 2 * i, static_cast<uint8_t>(Name[i]));
    Put16(e + 64, static_cast<uint16_t>(2 * (len + 1))); // bytes, with the terminating zero
    e[66] = Type;
    e[67] = 1; // black: a tree of one node per level is trivially balanced
    Put32(e + 68, NoStream);
    Put32(e + 72, NoStream);
    Put32(e + 76, Child);
    Put32(e + 116, Start);
    Put32(e + 120, Size);
}

} // namespace

TCompoundFileWriter::TCompoundFileWriter(TExportOutput& Out) : FOut(Out) {
    const uint8_t header[HeaderSize] = {};
    FOut.Write(header, sizeof header);
}

void TCompoundFileWriter::CheckSize() const {
    if (StreamPosition() > MaxStreamSize)
        RaiseExportError(FOut.FileName(), "the workbook would be larger than the 2 GB an .xls file can hold; "
                                          "export to an .xlsx file instead");
}

void TCompoundFileWriter::Finish() {
    CheckSize();
    uint64_t size = StreamPosition();
    // Padding after the last sheet's end record is never read: readers find the sheets by their offsets.
    const uint64_t padded = std::max<uint64_t>(size, MiniStreamCutoff);
    const uint64_t sectorEnd = (padded + SectorSize - 1) / SectorSize * SectorSize;
    std::vector<uint8_t> zeros(sectorEnd - size);
    FOut.Write(zeros.data(), zeros.size());
    size = padded;

    // The table must list every sector, its own and its extension's included.
    const uint32_t streamSectors = static_cast<uint32_t>(sectorEnd / SectorSize);
    uint32_t fatSectors = 1, difatSectors = 0;
    for (;;) {
        difatSectors = fatSectors > HeaderDifatEntries ? CeilDiv(fatSectors - HeaderDifatEntries, 127) : 0;
        const uint32_t need =
            CeilDiv(uint64_t(streamSectors) + fatSectors + difatSectors + 1, EntriesPerSector);
        if (need <= fatSectors) break;
        fatSectors = need;
    }
    const uint32_t firstFat = streamSectors;
    const uint32_t firstDifat = firstFat + fatSectors;
    const uint32_t directory = firstDifat + difatSectors;

    uint8_t sector[SectorSize];
    for (uint32_t s = 0; s < fatSectors; ++s) {
        for (uint32_t k = 0; k < EntriesPerSector; ++k) {
            const uint32_t i = s * EntriesPerSector + k;
            uint32_t v = FreeSect;
            if (i + 1 < streamSectors)
                v = i + 1;
            else if (i + 1 == streamSectors || i == directory)
                v = EndOfChain;
            else if (i < firstDifat)
                v = FatSect;
            else if (i < directory)
                v = DifSect;
            Put32(sector + 4 * k, v);
        }
        FOut.Write(sector, SectorSize);
    }
    for (uint32_t d = 0; d < difatSectors; ++d) {
        for (uint32_t k = 0; k < 127; ++k) {
            const uint32_t fat = HeaderDifatEntries + d * 127 + k;
            Put32(sector + 4 * k, fat < fatSectors ? firstFat + fat : FreeSect);
        }
        Put32(sector + 4 * 127, d + 1 < difatSectors ? firstDifat + d + 1 : EndOfChain);
        FOut.Write(sector, SectorSize);
    }
    std::memset(sector, 0, SectorSize);
    DirectoryEntry(sector, "Root Entry", 5, 1, EndOfChain, 0);
    DirectoryEntry(sector + 128, "Workbook", 2, NoStream, 0, static_cast<uint32_t>(size));
    for (int unused = 2; unused < 4; ++unused) {
        Put32(sector + 128 * unused + 68, NoStream);
        Put32(sector + 128 * unused + 72, NoStream);
        Put32(sector + 128 * unused + 76, NoStream);
    }
    FOut.Write(sector, SectorSize);

    uint8_t header[HeaderSize] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
    Put16(header + 24, 0x003E); // minor version
    Put16(header + 26, 0x0003); // major version 3: 512-byte sectors
    Put16(header + 28, 0xFFFE); // little-endian
    Put16(header + 30, 9);      // sector size 2^9
    Put16(header + 32, 6);      // mini sector size 2^6
    Put32(header + 44, fatSectors);
    Put32(header + 48, directory);
    Put32(header + 56, MiniStreamCutoff);
    Put32(header + 60, EndOfChain); // no mini table
    Put32(header + 68, difatSectors ? firstDifat : EndOfChain);
    Put32(header + 72, difatSectors);
    for (uint32_t k = 0; k < HeaderDifatEntries; ++k)
        Put32(header + 76 + 4 * k, k < fatSectors ? firstFat + k : FreeSect);
    FOut.Patch(0, header, HeaderSize);
    FOut.Flush();
}
