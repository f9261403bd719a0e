# Debian's cross compiler for 64-bit Windows, the variant with std::thread. Libraries and headers
# come from the folder of the cross-built libraries alone, never from this system.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_AR x86_64-w64-mingw32-gcc-ar-posix)
set(CMAKE_RANLIB x86_64-w64-mingw32-gcc-ranlib-posix)

if(DEFINED ENV{MERIVANE_WINDOWS})
  set(MERIVANE_WINDOWS $ENV{MERIVANE_WINDOWS})
else()
  set(MERIVANE_WINDOWS $ENV{HOME}/.cache/merivane-windows)
endif()
set(CMAKE_FIND_ROOT_PATH ${MERIVANE_WINDOWS}/prefix /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# pkg-config sees the cross-built libraries alone.
set(ENV{PKG_CONFIG_LIBDIR} ${MERIVANE_WINDOWS}/prefix/lib/pkgconfig)
set(ENV{PKG_CONFIG_PATH} "")

set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")

# The programs that a build makes and runs, and the tests, run under Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/windows/wine.sh)
