# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# A room is one folder of src/ and one library target. Its headers are reached as "room/Header.h"
# through an include folder that holds this room alone, so that a header of a room that a target
# does not link cannot be found.
#
# tactus_room(NAME room LINKS public-target... PRIVATE_LINKS target... EXCEPT folder...)
# Sources below an excepted folder are another target's.

function(tactus_room room)
    cmake_parse_arguments(ARG "" "" "LINKS;PRIVATE_LINKS;EXCEPT" ${ARGN})
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    foreach(folder ${ARG_EXCEPT})
        list(FILTER sources EXCLUDE REGEX "^${CMAKE_CURRENT_SOURCE_DIR}/${folder}/")
    endforeach()
    set(door ${CMAKE_BINARY_DIR}/rooms/${room})
    file(MAKE_DIRECTORY ${door})
    if(NOT EXISTS ${door}/${room})
        file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${door}/${room} SYMBOLIC)
    endif()
    add_library(tactus_${room} STATIC ${sources})
    set_target_properties(tactus_${room} PROPERTIES EXPORT_NAME ${room})
    target_include_directories(tactus_${room} PUBLIC
        $<BUILD_INTERFACE:${door}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/tactus>)
    target_compile_features(tactus_${room} PUBLIC cxx_std_20)
    target_link_libraries(tactus_${room}
        PUBLIC $<BUILD_INTERFACE:Numerics> ${ARG_LINKS}
        PRIVATE $<BUILD_INTERFACE:Warnings> ${ARG_PRIVATE_LINKS})
endfunction()
