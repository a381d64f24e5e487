# The tests of a program for Windows, which tests/windows.sh runs by Wine. KVA_CODE_PAGE_TABLES is what a build for this
# machine has generated: BUILD/win/CodePageTables.cpp.
set(KVA_CODE_PAGE_TABLES ${CMAKE_SOURCE_DIR}/build/dev/win/CodePageTables.cpp CACHE FILEPATH "Made by another build")
set(googletest /usr/src/googletest/googletest)
add_library(kva_gtest STATIC EXCLUDE_FROM_ALL ${googletest}/src/gtest-all.cc ${googletest}/src/gtest_main.cc)
target_include_directories(kva_gtest SYSTEM PUBLIC ${googletest}/include PRIVATE ${googletest})
target_compile_features(kva_gtest PUBLIC cxx_std_20)

# An archive can be made without a build for this machine, but not tested.
if(NOT EXISTS ${KVA_CODE_PAGE_TABLES})
  return()
endif()
add_executable(kva_windows_tests
  SystemCodePageTest.cpp
  WinLayerTest.cpp
  ${KVA_CODE_PAGE_TABLES})
target_link_libraries(kva_windows_tests PRIVATE kva_cli kva_completion kva_diff kva_host kva_rules kva_gtest)
target_include_directories(kva_windows_tests PRIVATE ${CMAKE_SOURCE_DIR})
target_compile_definitions(kva_windows_tests PRIVATE KVA_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
