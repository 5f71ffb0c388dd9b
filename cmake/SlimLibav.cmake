# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# tactus_libav: FFmpeg's libraries, as a target for whoever links them.
#
# A program with the property TACTUS_SLIM takes only the decoders and containers that are read out of
# FFmpeg's static libraries. The shared ones load a hundred others, which costs each start 20 ms and
# 30 MB. Such a program can't be position-independent, as FFmpeg's static assembly isn't, and gets
# FFmpeg's corrections by being built again. Where there are no static libraries, or ones of another
# make, the property changes nothing. docs/decisions/0011-slim-start.md has more.

option(TACTUS_SLIM_LIBAV "Link the command line with no more of FFmpeg than it uses" ON)

pkg_check_modules(libav REQUIRED IMPORTED_TARGET libavformat libavcodec libswresample libavutil)
add_library(tactus_libav INTERFACE)

# Writes SlimLibav.cpp, with the lists of what is read.
function(tactus_write_slim_source target_file)
    set(list_file ${PROJECT_SOURCE_DIR}/src/platform/ReadKinds.cpp)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list_file})
    file(READ ${list_file} text)
    string(REGEX MATCHALL "{\"[a-z0-9]+\", \"" demuxers "${text}")
    list(TRANSFORM demuxers REPLACE "{\"([a-z0-9]+)\", \"" "ff_\\1_demuxer")
    string(REGEX MATCH "kDecoders\\[\\] =[^;]*" decoders "${text}")
    string(REGEX REPLACE "kDecoders\\[\\] =|[\" \n]" "" decoders "${decoders}")
    string(REPLACE "," ";" decoders "${decoders}")
    list(TRANSFORM decoders REPLACE "(.+)" "ff_\\1_decoder")
    set(SLIM_DECLARATIONS "")
    foreach(name ${decoders})
        string(APPEND SLIM_DECLARATIONS "extern AVCodec const ${name};\n")
    endforeach()
    foreach(name ${demuxers})
        string(APPEND SLIM_DECLARATIONS "extern AVInputFormat const ${name};\n")
    endforeach()
    list(LENGTH decoders SLIM_DECODER_COUNT)
    list(LENGTH demuxers SLIM_DEMUXER_COUNT)
    list(TRANSFORM decoders PREPEND "&")
    list(TRANSFORM demuxers PREPEND "&")
    list(JOIN decoders ",\n    " SLIM_DECODERS)
    list(JOIN demuxers ",\n    " SLIM_DEMUXERS)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/SlimLibav.cpp.in ${target_file} @ONLY)
endfunction()

set(TACTUS_SLIM_WORKS FALSE)
if(TACTUS_SLIM_LIBAV AND NOT TACTUS_SANITIZE)
    set(slim_source ${CMAKE_BINARY_DIR}/SlimLibav.cpp)
    tactus_write_slim_source(${slim_source})
    set(slim_libraries -Wl,--start-group)
    foreach(name avformat avcodec swresample avutil)
        find_library(TACTUS_STATIC_${name} lib${name}.a HINTS ${libav_LIBRARY_DIRS})
        list(APPEND slim_libraries ${TACTUS_STATIC_${name}})
    endforeach()
    list(APPEND slim_libraries -Wl,--end-group z bz2 m Threads::Threads)
    file(WRITE ${CMAKE_BINARY_DIR}/SlimLibavTry.cpp "extern \"C\" {
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}
int main() {
    return avformat_open_input(nullptr, \"\", nullptr, nullptr) + swr_init(nullptr);
}
")
    if(NOT slim_libraries MATCHES "NOTFOUND")
        list(TRANSFORM slim_libraries REPLACE "^(z|bz2|m)$" "-l\\1" OUTPUT_VARIABLE slim_words)
        list(TRANSFORM slim_words REPLACE "^Threads::Threads$" "-pthread")
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -std=c++20 -w -no-pie -Wl,-u,av_codec_iterate -Wl,--gc-sections
                -o ${CMAKE_BINARY_DIR}/SlimLibavTry ${CMAKE_BINARY_DIR}/SlimLibavTry.cpp
                ${slim_source} ${slim_words}
            RESULT_VARIABLE slim_result OUTPUT_QUIET ERROR_QUIET)
        if(slim_result EQUAL 0)
            set(TACTUS_SLIM_WORKS TRUE)
        endif()
    endif()
    message(STATUS "The command line links only what it uses of FFmpeg: ${TACTUS_SLIM_WORKS}")
endif()

if(TACTUS_SLIM_WORKS)
    add_library(tactus_slim_libav STATIC ${slim_source})
    target_compile_features(tactus_slim_libav PRIVATE cxx_std_20)
    target_link_libraries(tactus_slim_libav INTERFACE ${slim_libraries})
    # The symbol asked for brings in these registries before FFmpeg's own are met.
    target_link_options(tactus_slim_libav INTERFACE -no-pie -Wl,-u,av_codec_iterate -Wl,--gc-sections)
    target_link_libraries(tactus_libav INTERFACE
        $<IF:$<BOOL:$<TARGET_PROPERTY:TACTUS_SLIM>>,tactus_slim_libav,PkgConfig::libav>)
else()
    target_link_libraries(tactus_libav INTERFACE PkgConfig::libav)
endif()
