# The same conversions of forms by the run-time library of Free Pascal: the target kva_fpcforms, if KVA_FREE_PASCAL is ON.
# FPCFORMS is the program. PARSEUNITS, the target kva_parseunits, is one that parses units.
set(FPCFORMS ${CMAKE_CURRENT_BINARY_DIR}/fpcforms)
if(KVA_FREE_PASCAL)
  find_program(KVA_FPC fpc)
  if(NOT KVA_FPC)
    message(FATAL_ERROR "No Free Pascal compiler (packages fp-compiler, fp-units-rtl, fp-units-fcl). "
                        "-DKVA_FREE_PASCAL=OFF leaves the tests of agreement with its conversions out.")
  endif()
  add_custom_command(
    OUTPUT ${FPCFORMS}
    COMMAND ${KVA_FPC} -O3 -v0 -FU${CMAKE_CURRENT_BINARY_DIR} -o${FPCFORMS} ${CMAKE_SOURCE_DIR}/bench/fpcforms.pas
    DEPENDS ${CMAKE_SOURCE_DIR}/bench/fpcforms.pas
    VERBATIM)
  add_custom_target(kva_fpcforms DEPENDS ${FPCFORMS})
  set(PARSEUNITS ${CMAKE_CURRENT_BINARY_DIR}/parseunits)
  add_custom_command(
    OUTPUT ${PARSEUNITS}
    COMMAND ${KVA_FPC} -O1 -v0 -FU${CMAKE_CURRENT_BINARY_DIR} -o${PARSEUNITS} ${CMAKE_SOURCE_DIR}/tests/parseunits.pas
    DEPENDS ${CMAKE_SOURCE_DIR}/tests/parseunits.pas
    VERBATIM)
  add_custom_target(kva_parseunits DEPENDS ${PARSEUNITS})
endif()
