# The same conversions of forms by the run-time library of Free Pascal: the target kva_fpcforms, where its compiler is
# installed. FPCFORMS is the program.
find_program(KVA_FPC fpc)
set(FPCFORMS ${CMAKE_CURRENT_BINARY_DIR}/fpcforms)
if(KVA_FPC)
  add_custom_command(
    OUTPUT ${FPCFORMS}
    COMMAND ${KVA_FPC} -O3 -v0 -FU${CMAKE_CURRENT_BINARY_DIR} -o${FPCFORMS} ${CMAKE_SOURCE_DIR}/bench/fpcforms.pas
    DEPENDS ${CMAKE_SOURCE_DIR}/bench/fpcforms.pas
    VERBATIM)
  add_custom_target(kva_fpcforms DEPENDS ${FPCFORMS})
else()
  message(WARNING "No Free Pascal compiler (fp-compiler, fp-units-rtl): the tests of agreement with its conversions are not built.")
endif()
