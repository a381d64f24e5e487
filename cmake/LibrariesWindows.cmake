# The libraries of a program for Windows. scripts/build-windows.sh has put what no MinGW package has into KVA_SOURCES:
# the headers of the header-only libraries in `include`, and the sources of pugixml.
set(KVA_SOURCES ${CMAKE_SOURCE_DIR}/build/windows/sources CACHE PATH "Made by scripts/build-windows.sh")

# Only the macros for UTF-8, which need no library. What ICU's tables say elsewhere, the system says here.
add_library(kva_icu INTERFACE)
target_include_directories(kva_icu SYSTEM INTERFACE ${KVA_SOURCES}/include)

add_library(kva_pugixml STATIC ${KVA_SOURCES}/pugixml/src/pugixml.cpp)
target_include_directories(kva_pugixml SYSTEM PUBLIC ${KVA_SOURCES}/pugixml/src)

find_library(KVA_ARCHIVE_zlib libz.a REQUIRED)
add_library(kva_zlib INTERFACE)
target_link_libraries(kva_zlib INTERFACE ${KVA_ARCHIVE_zlib})

add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)

# The other header-only libraries, which elsewhere lie where every compiler looks.
target_include_directories(kva_rules SYSTEM INTERFACE ${KVA_SOURCES}/include)
