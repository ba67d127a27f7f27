# Run by CPack when the files lie in the folder that the package is made of. What the programs are
# linked with is what the package depends on; but it only recommends what the settings window alone
# needs, without which everything else works, and says nothing of what the module of the desktop's
# accounts needs: where there are such accounts its libraries are installed, and where there are none
# it is never loaded.
set(work "${CPACK_TOPLEVEL_DIRECTORY}/shlibdeps")
file(WRITE "${work}/debian/control" "Source: orvane\n\nPackage: orvane\nArchitecture: any\n")
file(GLOB_RECURSE programs LIST_DIRECTORIES false "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/orvane*")
set(needed "")
set(wished "")
foreach(program ${programs})
  file(READ "${program}" magic LIMIT 4 HEX)
  if(NOT magic STREQUAL "7f454c46" OR program MATCHES "/orvane-evolution\\.so$")
    continue()
  elseif(program MATCHES "/orvane-settings$")
    list(APPEND wished "${program}")
  else()
    list(APPEND needed "${program}")
  endif()
endforeach()

set(command dpkg-shlibdeps --ignore-missing-info -O -dDepends ${needed})
if(wished)
  list(APPEND command -dRecommends ${wished})
endif()
execute_process(COMMAND ${command} WORKING_DIRECTORY "${work}" OUTPUT_VARIABLE found
                COMMAND_ERROR_IS_FATAL ANY)
foreach(field DEPENDS RECOMMENDS)
  string(SUBSTRING ${field} 0 1 initial)
  string(SUBSTRING ${field} 1 -1 rest)
  string(TOLOWER "${rest}" rest)
  if(found MATCHES "shlibs:${initial}${rest}=([^\n]+)")
    string(APPEND CPACK_DEBIAN_PACKAGE_${field} ", ${CMAKE_MATCH_1}")
  endif()
endforeach()
