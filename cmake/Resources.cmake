# The icon, the version and the manifest of the programs for Windows.
enable_language(RC)
find_program(KVA_RSVG rsvg-convert REQUIRED)
find_program(KVA_ICOTOOL icotool REQUIRED)

# The icon in its usual sizes, drawn from packaging/kvawizard.svg. The largest one is kept as a PNG.
set(KVA_ICON ${CMAKE_BINARY_DIR}/packaging/kvawizard.ico)
set(drawing ${CMAKE_SOURCE_DIR}/packaging/kvawizard.svg)
set(sizes)
set(draw)
foreach(size 16 20 24 32 40 48 64 256)
  set(png ${CMAKE_BINARY_DIR}/packaging/kvawizard-${size}.png)
  list(APPEND draw COMMAND ${KVA_RSVG} -w ${size} -h ${size} ${drawing} -o ${png})
  if(size EQUAL 256)
    list(APPEND sizes -r)
  endif()
  list(APPEND sizes ${png})
endforeach()
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/packaging)
add_custom_command(
  OUTPUT ${KVA_ICON}
  ${draw}
  COMMAND ${KVA_ICOTOOL} -c -o ${KVA_ICON} ${sizes}
  DEPENDS ${drawing}
  VERBATIM)
add_custom_target(kva_icon DEPENDS ${KVA_ICON})

# kva_resources(TARGET DESCRIPTION TYPE [MANIFEST])
#
# Gives a program or library the icon and a version. TYPE is VFT_APP or VFT_DLL, MANIFEST a file of packaging/windows.
function(kva_resources target description type)
  set(file ${target}.exe)
  if(type STREQUAL VFT_DLL)
    set(file ${target}.dll)
  endif()
  set(icon ${KVA_ICON})
  if(ARGN)
    set(manifest_line "1 24 \"${CMAKE_SOURCE_DIR}/packaging/windows/${ARGN}\"")
  endif()
  set(source ${CMAKE_BINARY_DIR}/packaging/${target}.rc)
  configure_file(${CMAKE_SOURCE_DIR}/packaging/windows/program.rc.in ${source} @ONLY)
  set_source_files_properties(${source} PROPERTIES OBJECT_DEPENDS "${KVA_ICON}")
  target_sources(${target} PRIVATE ${source})
  add_dependencies(${target} kva_icon)
endfunction()
