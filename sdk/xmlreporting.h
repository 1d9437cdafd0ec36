/* The report library kit: the binary contract between the notice board and a report library.
 *
 * A report library is a shared library ("XmlReportingNB") that exports one entry point, printFromXML,
 * under its plain C name. The board loads the library, looks the name up, calls it once with the report XML
 * (docs/report-xml.md describes the document) and unloads the library again. Plain C (C11 and C++); the
 * result is a 32-bit integer, the XML a NUL-terminated UTF-8 text and the three further texts length-prefixed
 * short strings (see NBR_ShortString).
 *
 * Threads: the board calls printFromXML from its own (user-interface) thread, one call at a time, and the
 * library may show modal windows (the print dialog) during the call. A script may call it from a program
 * without any user interface; the library then provides what it needs for the duration of the call. */
#ifndef NB_XMLREPORTING_H
#define NB_XMLREPORTING_H

#include <stdint.h>

/* The calling convention of the entry point: stdcall on 32-bit Windows (the callee removes its four
 * arguments), the platform's own elsewhere. */
#if defined(_WIN32) && !defined(_WIN64)
#define NBR_CALL __stdcall
#else
#define NBR_CALL
#endif

/* Put in front of printFromXML where a library defines it, so that it is exported. */
#if defined(_WIN32)
#define NBR_EXPORT __declspec(dllexport)
#else
#define NBR_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* A short string: one length byte (0 to 255) followed by that many bytes of text, with no terminating NUL
 * required. Longer texts are cut at 255 bytes by the caller. A buffer of this type always has room for the
 * longest one. */
typedef unsigned char NBR_ShortString[256];

/* Results of printFromXML. The board does not act on them (it never raises for a report that did not
 * print: in interactive use the library has already told the user why); scripts and tests do. */
enum {
    NBR_OK = 0,               /* printed, or the PDF file was written */
    NBR_CANCELLED = 48000,    /* the user cancelled the print dialog; nothing was printed */
    NBR_ERR_ARGUMENT = 48001, /* xml_text is NULL */
    NBR_ERR_XML = 48002,      /* the XML text is malformed or is not a report document */
    NBR_ERR_OUTPUT = 48003,   /* the printer or the PDF file could not be written (no file is left) */
    NBR_ERR_NO_GUI = 48004,   /* no user interface could be had: a print dialog was needed but there is no
                                 display, or the call came from a thread other than the application's */
    NBR_ERR_INTERNAL = 48005  /* anything else went wrong inside the library; nothing was printed */
};

/* printFromXML: prints one report.
 *   xml_text: the report XML, NUL-terminated UTF-8. Owned by the caller; read during the call only.
 *   text3: empty, or the name of a PDF file to write without any dialog (for scripts and tests). The file
 *          appears only when complete: an existing file of that name is replaced only on success. With an
 *          empty text3 the library shows a print dialog (one of whose choices writes a PDF file); cancelling
 *          it prints nothing.
 *   text4, text5: reserved; the board passes them empty and the library ignores them.
 * text3 to text5 point to short strings (NBR_ShortString) owned by the caller and valid during the call;
 * NULL reads as an empty text.
 * Thread: the caller's user-interface thread when the caller has one (the board's); otherwise any single
 * thread, one call at a time. The library never lets an exception or a longjmp out.
 * Result: NBR_OK or one of the codes above. */
typedef int32_t(NBR_CALL* NBR_printFromXML_Fn)(const char* xml_text, const unsigned char* text3,
                                               const unsigned char* text4, const unsigned char* text5);

NBR_EXPORT int32_t NBR_CALL printFromXML(const char* xml_text, const unsigned char* text3,
                                         const unsigned char* text4, const unsigned char* text5);

#ifdef __cplusplus
}
#endif

#endif /* NB_XMLREPORTING_H */
