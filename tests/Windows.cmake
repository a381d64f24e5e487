# For the tests of a program for Windows, which tests/windows.sh runs by Wine. KVA_CODE_PAGE_TABLES is what a build for
# this machine has generated: BUILD/win/CodePageTables.cpp.
set(KVA_CODE_PAGE_TABLES ${CMAKE_SOURCE_DIR}/build/dev/win/CodePageTables.cpp CACHE FILEPATH "Made by another build")
set(googletest /usr/src/googletest/googletest)
add_library(kva_gtest STATIC EXCLUDE_FROM_ALL ${googletest}/src/gtest-all.cc ${googletest}/src/gtest_main.cc)
target_include_directories(kva_gtest SYSTEM PUBLIC ${googletest}/include PRIVATE ${googletest})
target_compile_features(kva_gtest PUBLIC cxx_std_20)

set(GTEST kva_gtest)
set(TEST_ROOT Z:)  # the root folder of this machine under Wine
