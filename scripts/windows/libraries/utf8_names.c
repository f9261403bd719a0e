// Files opened by names in UTF-8, in place of the calls that take the system's code page.
#include <stdio.h>
#include <windows.h>

#undef CreateFileA
#undef fopen

enum { kLongest = 32768 };  // characters of a path

static int Widen(const char* name, wchar_t* wide) {
  return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, name, -1, wide, kLongest) > 0;
}

FILE* OpenUtf8Stream(const char* name, const char* mode) {
  static __thread wchar_t wide[kLongest];
  wchar_t wideMode[8];
  if (!Widen(name, wide) || MultiByteToWideChar(CP_UTF8, 0, mode, -1, wideMode, 8) == 0)
    return NULL;
  return _wfopen(wide, wideMode);
}

// 0 where there is such a file.
int HasUtf8Name(const char* name) {
  static __thread wchar_t wide[kLongest];
  if (!Widen(name, wide)) return -1;
  return GetFileAttributesW(wide) == INVALID_FILE_ATTRIBUTES ? -1 : 0;
}

HANDLE WINAPI OpenUtf8Handle(const char* name, DWORD access, DWORD share,
                             SECURITY_ATTRIBUTES* security, DWORD how, DWORD flags,
                             HANDLE likeness) {
  static __thread wchar_t wide[kLongest];
  if (!Widen(name, wide)) return INVALID_HANDLE_VALUE;
  return CreateFileW(wide, access, share, security, how, flags, likeness);
}

// As the header declares the call that this one stands for.
HANDLE(WINAPI* __imp_OpenUtf8Handle)(const char*, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD,
                                     HANDLE) = OpenUtf8Handle;
