# The rules that hold for every target, and kva_layer(), which makes a folder of the house a build target.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

add_library(kva_rules INTERFACE)
target_compile_options(kva_rules INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
                                           -Woverloaded-virtual -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # g++ 12 sees overlapping copies in std::string's own operator+ (GCC bug 105651).
  target_compile_options(kva_rules INTERFACE -Wno-restrict)
endif()
if(WIN32)
  # Windows 7 and later. The main thread and all others get the stack that they have elsewhere.
  target_compile_definitions(kva_rules INTERFACE
    _WIN32_WINNT=0x0601 UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN __USE_MINGW_ANSI_STDIO=1)
  target_link_options(kva_rules INTERFACE -Wl,--stack,8388608)
endif()
if(KVA_SANITIZE)
  # "thread", or anything else that is true for the address and undefined-behaviour sanitizers.
  set(sanitizers address,undefined)
  if(KVA_SANITIZE STREQUAL thread)
    set(sanitizers thread)
  endif()
  target_compile_options(kva_rules INTERFACE -fsanitize=${sanitizers} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kva_rules INTERFACE -fsanitize=${sanitizers})
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # The sanitizers' instrumentation makes g++ report uninitialised reads in the standard library.
    target_compile_options(kva_rules INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()
# What is recorded of the layers, but not of tests and benchmarks.
add_library(kva_records INTERFACE)
if(KVA_COVERAGE)
  target_compile_options(kva_records INTERFACE -fprofile-instr-generate -fcoverage-mapping)
  target_link_options(kva_rules INTERFACE -fprofile-instr-generate)
endif()
if(KVA_FUZZ)
  # The branches that an input takes, for the driver of the fuzz targets.
  target_compile_options(kva_records INTERFACE -fsanitize=fuzzer-no-link)
endif()

# kva_layer(NAME SOURCES ... [SEES layer ...] [USES layer ...] [PRIVATE_LIBS lib ...])
#
# Makes the library kva_NAME of the present folder. Its headers are included by their path from the top of the tree,
# "MigWizard/form/FormParser.h", and the only include path that finds them comes with linking kva_NAME. SEES names the
# layers that its headers include: whoever sees this layer sees them too. USES names those that only its sources
# include: nobody sees them through it. An include of a folder that is reached neither way does not compile.
function(kva_layer name)
  cmake_parse_arguments(ARG "" "" "SOURCES;SEES;USES;PRIVATE_LIBS" ${ARGN})
  set(view ${CMAKE_BINARY_DIR}/include/${name})
  file(RELATIVE_PATH folder ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  get_filename_component(parent ${view}/${folder} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${view}/${folder} SYMBOLIC)
  list(TRANSFORM ARG_SEES PREPEND kva_ OUTPUT_VARIABLE seen)
  list(TRANSFORM ARG_USES PREPEND kva_ OUTPUT_VARIABLE used)
  if(ARG_SOURCES)
    add_library(kva_${name} STATIC ${ARG_SOURCES})
    target_include_directories(kva_${name} PUBLIC ${view})
    target_link_libraries(kva_${name} PUBLIC ${seen} PRIVATE ${used} kva_rules kva_records ${ARG_PRIVATE_LIBS})
  else()
    add_library(kva_${name} INTERFACE)
    target_include_directories(kva_${name} INTERFACE ${view})
    target_link_libraries(kva_${name} INTERFACE ${seen})
  endif()
endfunction()
