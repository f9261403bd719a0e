#include "iconv.h"

#include <errno.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <windows.h>

static const UINT kUtf16 = 1200;

// The number at the end of names such as IBM850, WINDOWS-1252 and CP1361, or what stands for it.
static UINT CodePageOf(const char* name) {
  static const struct {
    const char* name;
    UINT page;
  } named[] = {{"UCS-2LE", 1200},    {"UTF-16LE", 1200},    {"UTF-8", CP_UTF8},
               {"SHIFT-JIS", 932},   {"BIG-5", 950},        {"BIG5-HKSCS", 951},
               {"KOI8-R", 20866},    {"KOI8-U", 21866},     {"EUC-JP", 20932},
               {"EUC-CN", 51936},    {"EUC-KR", 51949},     {"ISO-8859-1", 28591},
               {"ISO-8859-2", 28592}, {"ISO-8859-3", 28593}, {"ISO-8859-4", 28594},
               {"ISO-8859-5", 28595}, {"ISO-8859-6", 28596}, {"ISO-8859-7", 28597},
               {"ISO-8859-8", 28598}, {"ISO-8859-9", 28599}, {"ISO-8859-13", 28603},
               {"ISO-8859-15", 28605}};
  for (size_t i = 0; i < sizeof named / sizeof *named; ++i) {
    if (_stricmp(name, named[i].name) == 0) return named[i].page;
  }
  return (UINT)strtoul(name + strcspn(name, "0123456789"), NULL, 10);
}

iconv_t iconv_open(const char* to, const char* from) {
  const UINT page = CodePageOf(from);
  const int known = page == kUtf16 || IsValidCodePage(page);
  const int toUtf8 = CodePageOf(to) == CP_UTF8;
  // libmdb asks for the way back too, and never goes it.
  if (!toUtf8 && page == CP_UTF8) return (iconv_t)(intptr_t)CP_UTF8;
  if (toUtf8 && known) return (iconv_t)(intptr_t)page;
  errno = EINVAL;
  return (iconv_t)-1;
}

static size_t Stop(int number) {
  errno = number;
  return (size_t)-1;
}

size_t iconv(iconv_t conversion, char** from, size_t* fromLeft, char** to, size_t* toLeft) {
  const UINT page = (UINT)(intptr_t)conversion;
  if (from == NULL || *from == NULL) return 0;
  while (*fromLeft > 0) {
    wchar_t wide = 0;
    size_t used = 1;
    if (page == kUtf16) {
      used = 2;
      if (*fromLeft < used) return Stop(EINVAL);
      memcpy(&wide, *from, used);
      if (wide >= 0xD800 && wide <= 0xDFFF) return Stop(EILSEQ);  // UCS-2 knows no pairs
    } else {
      if (IsDBCSLeadByteEx(page, (BYTE)**from)) used = 2;
      if (*fromLeft < used) return Stop(EINVAL);
      if (MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, *from, (int)used, &wide, 1) != 1)
        return Stop(EILSEQ);
    }
    char utf8[4];
    const int size = WideCharToMultiByte(CP_UTF8, 0, &wide, 1, utf8, sizeof utf8, NULL, NULL);
    if (size <= 0) return Stop(EILSEQ);
    if ((size_t)size > *toLeft) return Stop(E2BIG);
    memcpy(*to, utf8, (size_t)size);
    *to += size;
    *toLeft -= (size_t)size;
    *from += used;
    *fromLeft -= used;
  }
  return 0;
}

int iconv_close(iconv_t conversion) {
  (void)conversion;
  return 0;
}
