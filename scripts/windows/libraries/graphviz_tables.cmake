# What Graphviz makes of its own tables and grammars before it is compiled.
find_program(FLEX flex REQUIRED)
find_program(BISON bison REQUIRED)
find_program(AWK NAMES gawk mawk awk REQUIRED)
find_program(PERL perl REQUIRED)
set(made ${CMAKE_BINARY_DIR}/graphviz)
file(MAKE_DIRECTORY ${made})

# made(FILE words...): runs a command; the file is its standard output, where one is named.
function(made file)
  set(output)
  if(file)
    set(output OUTPUT_FILE ${made}/${file})
  endif()
  execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C ${ARGN} ${output} ERROR_VARIABLE words
    COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# renamed(PREFIX FILES...): a parser under names that it shares with no other.
function(renamed prefix)
  foreach(file ${ARGN})
    file(READ ${made}/${file} text)
    string(REPLACE "yy" "${prefix}" text "${text}")
    string(REGEX REPLACE "unsigned long( int)?" "uint64_t" text "${text}")
    string(REGEX REPLACE "[^\n]*extern[^\n]*isatty[^\n]*\n" "" text "${text}")
    file(WRITE ${made}/${file} "${text}")
  endforeach()
endfunction()

made("" ${BISON} -dy ${gv}/cgraph/grammar.y -o ${made}/grammar.c)
made("" ${FLEX} -i -o ${made}/scan.c ${gv}/cgraph/scan.l)
renamed(aag grammar.c grammar.h scan.c)
made("" ${BISON} -dy -Wno-all ${gv}/common/htmlparse.y -o ${made}/htmlparse.c)
renamed(html htmlparse.c htmlparse.h)
set(grammar_sources ${made}/grammar.c ${made}/scan.c)
set(html_sources ${made}/htmlparse.c)

set(awks ${gv}/../awk)
made(svgcolor_lib ${AWK} -f ${awks}/svgcolor.awk ${gv}/common/svgcolor_names)
made(brewer_lib ${AWK} -f ${awks}/brewer.awk ${gv}/common/brewer_colors)
made(color_lib sort ${gv}/common/color_names ${made}/svgcolor_lib ${made}/brewer_lib)
made(colortbl.h ${AWK} -f ${awks}/colortbl.awk ${made}/color_lib)
made(fonts.h ${PERL} ${gv}/common/mksvgfonts.pl ${gv}/common/fontmap.cfg ${gv}/common/ps_font_equiv.txt)
made(ps_font_equiv.h cat ${gv}/common/ps_fontmap.txt ${made}/fonts.h)
