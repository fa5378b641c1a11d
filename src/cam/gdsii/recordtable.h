// The records of the GDSII stream format, by the format's own names and numbers: record type in the high
// byte, type of the data in the low one.
#pragma once

#include <cstdint>

namespace cam::gdsii {

// clang-format off
#define CAM_GDSII_RECORDS(RECORD) \
    RECORD(HEADER, 0x0002)       RECORD(BGNLIB, 0x0102)      RECORD(LIBNAME, 0x0206)     RECORD(UNITS, 0x0305) \
    RECORD(ENDLIB, 0x0400)       RECORD(BGNSTR, 0x0502)      RECORD(STRNAME, 0x0606)     RECORD(ENDSTR, 0x0700) \
    RECORD(BOUNDARY, 0x0800)     RECORD(PATH, 0x0900)        RECORD(SREF, 0x0A00)        RECORD(AREF, 0x0B00) \
    RECORD(TEXT, 0x0C00)         RECORD(LAYER, 0x0D02)       RECORD(DATATYPE, 0x0E02)    RECORD(WIDTH, 0x0F03) \
    RECORD(XY, 0x1003)           RECORD(ENDEL, 0x1100)       RECORD(SNAME, 0x1206)       RECORD(COLROW, 0x1302) \
    RECORD(NODE, 0x1500)         RECORD(TEXTTYPE, 0x1602)    RECORD(PRESENTATION, 0x1701) RECORD(STRING, 0x1906) \
    RECORD(STRANS, 0x1A01)       RECORD(MAG, 0x1B05)         RECORD(ANGLE, 0x1C05)       RECORD(REFLIBS, 0x1F06) \
    RECORD(FONTS, 0x2006)        RECORD(PATHTYPE, 0x2102)    RECORD(GENERATIONS, 0x2202) RECORD(ATTRTABLE, 0x2306) \
    RECORD(ELFLAGS, 0x2601)      RECORD(NODETYPE, 0x2A02)    RECORD(PROPATTR, 0x2B02)    RECORD(PROPVALUE, 0x2C06) \
    RECORD(BOX, 0x2D00)          RECORD(BOXTYPE, 0x2E02)     RECORD(PLEX, 0x2F03)        RECORD(BGNEXTN, 0x3003) \
    RECORD(ENDEXTN, 0x3103)      RECORD(TAPENUM, 0x3202)     RECORD(TAPECODE, 0x3302)    RECORD(STRCLASS, 0x3401) \
    RECORD(FORMAT, 0x3602)       RECORD(MASK, 0x3706)        RECORD(ENDMASKS, 0x3800)    RECORD(LIBDIRSIZE, 0x3902) \
    RECORD(SRFNAME, 0x3A06)      RECORD(LIBSECUR, 0x3B02)
// clang-format on

enum class Record : std::uint16_t {
#define CAM_GDSII_ENUMERATOR(name, number) name = (number),
    CAM_GDSII_RECORDS(CAM_GDSII_ENUMERATOR)
#undef CAM_GDSII_ENUMERATOR
};

struct RecordName
{
    Record record;
    const char *name;
};

constexpr RecordName recordNames[] = {
#define CAM_GDSII_NAME(name, number) {Record::name, #name},
    CAM_GDSII_RECORDS(CAM_GDSII_NAME)
#undef CAM_GDSII_NAME
};
#undef CAM_GDSII_RECORDS

} // namespace cam::gdsii
