if(WIN32)
  include(${CMAKE_CURRENT_LIST_DIR}/LibrariesWindows.cmake)
  return()
endif()

# kva_library(NAME SHARED STATIC)
#
# Makes kva_NAME, which stands for the target SHARED in most programs, and for the archive STATIC in those with the
# property KVA_STATIC. Where there is no such archive, those programs cannot be linked, and all others can.
function(kva_library name shared static)
  find_library(KVA_ARCHIVE_${name} ${static})
  add_library(kva_${name} INTERFACE)
  target_link_libraries(kva_${name} INTERFACE
    $<IF:$<BOOL:$<TARGET_PROPERTY:KVA_STATIC>>,${KVA_ARCHIVE_${name}},${shared}>)
endfunction()

find_package(ICU REQUIRED COMPONENTS uc)
find_package(nlohmann_json REQUIRED)
find_package(pugixml REQUIRED)
find_package(ZLIB REQUIRED)
kva_library(icu ICU::uc libicuuc.a)
kva_library(pugixml pugixml::shared libpugixml.a)
kva_library(zlib ZLIB::ZLIB libz.a)
