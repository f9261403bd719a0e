# Our own code: warnings are errors, sanitizers where asked. Libraries from outside link without it.
add_library(merivane_options INTERFACE)
target_compile_options(merivane_options INTERFACE -Wall -Wextra -Wconversion -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # Release builds warn of an overlap in every "literal" + std::string (GCC bug 105329).
  target_compile_options(merivane_options INTERFACE $<$<CONFIG:Release>:-Wno-restrict>)
endif()
# The compiler's elimination of partial redundancies in its last stage (-fgcse) reads a
# variable ahead of a call that changes it and then throws: what cleans up behind the throw frees what was
# freed before. Seen in GCC 12 with the whole program in sight; docs/decisions.md tells how.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(merivane_options INTERFACE $<$<NOT:$<CONFIG:Debug>>:-fno-gcse>)
  target_link_options(merivane_options INTERFACE $<$<NOT:$<CONFIG:Debug>>:-fno-gcse>)
endif()
# Release builds see the whole program at the link, and refuse one name with two definitions.
if(CMAKE_BUILD_TYPE STREQUAL "Release" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  set(CMAKE_INTERPROCEDURAL_OPTIMIZATION ON)
  target_link_options(merivane_options INTERFACE -Werror=odr -Werror=lto-type-mismatch
                      -Wno-stringop-overflow)  # false in GCC 12 for joined texts
endif()
# Windows programs are the same bytes wherever and whenever they are built.
if(WIN32)
  add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:-ffile-prefix-map=${CMAKE_BINARY_DIR}=build>"
                      "$<$<COMPILE_LANGUAGE:CXX>:-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.>")
  add_link_options(-Wl,--no-insert-timestamp -fstack-protector-strong)
  # Earlier Windows refuses to load them, instead of running them half.
  add_link_options(-Wl,--major-os-version,10 -Wl,--minor-os-version,0
                   -Wl,--major-subsystem-version,10 -Wl,--minor-subsystem-version,0)
  set(CMAKE_AUTORCC_OPTIONS --format-version 1)  # later ones hold the times of the files
endif()
if(MERIVANE_SANITIZE)
  target_compile_options(merivane_options INTERFACE -fsanitize=address,undefined
                         -fno-sanitize-recover=all -fno-omit-frame-pointer
                         -Wno-maybe-uninitialized)  # sees values through the sanitizers' code
  target_link_options(merivane_options INTERFACE -fsanitize=address,undefined)
endif()

# The allocator of release builds: a translation makes and frees some fifty small blocks a row, half of them
# SQLite's, which takes a tenth of a run with the C library's. It stays out of the sanitizers' builds.
add_library(merivane_allocator INTERFACE)
if(CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT WIN32 AND NOT MERIVANE_SANITIZE)
  find_package(mimalloc REQUIRED)
  target_link_libraries(merivane_allocator INTERFACE mimalloc)
  target_sources(merivane_allocator INTERFACE ${CMAKE_SOURCE_DIR}/src/allocator/operator_new.cpp)
endif()

# merivane_sources(VARIABLE): every .cpp of the folder, but for those named *_windows and *_posix (or so
# and _test) that belong to another system.
function(merivane_sources variable)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "_posix(_test)?\\.cpp$")
  else()
    list(FILTER sources EXCLUDE REGEX "_windows(_test)?\\.cpp$")
  endif()
  set(${variable} ${sources} PARENT_SCOPE)
endfunction()

# merivane_library(NAME [libraries it may use...]): every .cpp of the folder, its include/ folder.
function(merivane_library name)
  merivane_sources(sources)
  add_library(merivane_${name} STATIC ${sources})
  target_include_directories(merivane_${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR}/include
                             PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(merivane_${name} PUBLIC ${ARGN} PRIVATE merivane_options)
endfunction()

# merivane_test(NAME libraries...): every *_test.cpp of the folder as one test program.
function(merivane_test name)
  merivane_sources(sources)
  if(NOT sources)
    return()
  endif()
  set(drive)
  if(WIN32 AND CMAKE_CROSSCOMPILING)
    set(drive Z:)  # which has the builder's own files
  endif()
  add_executable(merivane_test_${name} ${sources})
  target_include_directories(merivane_test_${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}
                             ${CMAKE_SOURCE_DIR}/tests/support)
  target_link_libraries(merivane_test_${name} PRIVATE ${ARGN} merivane_options merivane_allocator GTest::gtest
                        GTest::gmock GTest::gtest_main)
  target_compile_definitions(merivane_test_${name} PRIVATE
    MERIVANE_SAMPLES="${drive}${CMAKE_SOURCE_DIR}/samples"
    MERIVANE_BIN="${drive}${CMAKE_RUNTIME_OUTPUT_DIRECTORY}"
    MERIVANE_PLANS="${drive}${CMAKE_SOURCE_DIR}/../shared/plans")
  add_dependencies(merivane_test_${name} merivane_template)
  gtest_discover_tests(merivane_test_${name} DISCOVERY_TIMEOUT 60 PROPERTIES
    TIMEOUT 300 ENVIRONMENT QT_QPA_PLATFORM=offscreen)
endfunction()
include(GoogleTest)
