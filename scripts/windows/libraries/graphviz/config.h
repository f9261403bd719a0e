// What a build of Graphviz for Windows finds out about its system.
#pragma once

#include <stdint.h>
#include <sys/types.h>

#define PACKAGE_VERSION "2.42.2"
#define DEFAULT_DPI 96
#define DEFAULT_FONTPATH ""
#define GVPLUGIN_CONFIG_FILE "config6"
#define GVPLUGIN_VERSION 6
#define BROWSER ""
#define HAVE_FCNTL_H 1
#define HAVE_MALLOC_H 1
#define HAVE_SEARCH_H 1
#define HAVE_STRINGS_H 1
#define HAVE_SYS_STAT_H 1
#define HAVE_SYS_TYPES_H 1
#define HAVE_SYS_TIME_H 1
#define HAVE_UNISTD_H 1
#define HAVE_CBRT 1
#define HAVE_GETENV 1
#define HAVE_SETMODE 1
#define HAVE_SINCOS 1
#define HAVE_STRCASECMP 1
#define HAVE_STRNCASECMP 1
#define HAVE_VSNPRINTF 1
#define HAVE_SSIZE_T 1
#define HAVE_INTPTR_T 1
