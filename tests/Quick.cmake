# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# Read by ctest behind the lists of tests: the rooms whose tests take seconds get a second label,
# which gtest_discover_tests can't give.
foreach(room base engine IDTag)
    if(test_${room}_TESTS)
        set_tests_properties(${test_${room}_TESTS} PROPERTIES LABELS "${room};quick")
    endif()
endforeach()
