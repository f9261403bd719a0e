// As much of iconv as libmdb asks for: texts of UTF-16 or of a code page, to UTF-8.
#pragma once

#include <stddef.h>

typedef void* iconv_t;

#ifdef __cplusplus
extern "C" {
#endif

// (iconv_t)-1 for another direction than to UTF-8, from UTF-8, or an unknown code page.
iconv_t iconv_open(const char* to, const char* from);
// As POSIX tells it: stops at a character that has no meaning (EILSEQ), is cut off (EINVAL) or has
// no room (E2BIG), with the pointers before it.
size_t iconv(iconv_t conversion, char** from, size_t* fromLeft, char** to, size_t* toLeft);
int iconv_close(iconv_t conversion);

#ifdef __cplusplus
}
#endif
