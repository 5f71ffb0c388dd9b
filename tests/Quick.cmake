# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# Read by ctest behind the lists of tests: the rooms whose tests take seconds get a second label,
# which gtest_discover_tests can't give. Two tests take longer than all others together: they write
# gigabytes.
foreach(room base engine IDTag)
    set(tests ${test_${room}_TESTS})
    list(FILTER tests EXCLUDE REGEX "FileOverTwoGigabytes|TagOfTwoToTheTwentyEight")
    if(tests)
        set_tests_properties(${tests} PROPERTIES LABELS "${room};quick")
    endif()
endforeach()
