# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# What the Python package is built with: the system's Python, also where another one comes first in
# PATH (-DPython_EXECUTABLE names one of your own), and pybind11. TACTUS_PYTHON_DEFAULT is ON for
# tests where both are there. A sanitizer's library would have to be in the interpreter from its
# start, so there it is OFF.
if(NOT Python_EXECUTABLE AND EXISTS /usr/bin/python3)
    set(Python_EXECUTABLE /usr/bin/python3)
endif()
set(TACTUS_PYTHON_DEFAULT OFF)
find_path(TACTUS_PYBIND11_HEADERS pybind11/pybind11.h)
mark_as_advanced(TACTUS_PYBIND11_HEADERS)
if(TACTUS_PYBIND11_HEADERS AND NOT TACTUS_SANITIZE AND NOT CMAKE_CROSSCOMPILING)
    find_package(Python QUIET COMPONENTS Interpreter Development.Module)
    set(TACTUS_PYTHON_DEFAULT ${TACTUS_BUILD_TESTS})
    if(NOT Python_FOUND)
        set(TACTUS_PYTHON_DEFAULT OFF)
    endif()
endif()
