# Builds the library on its own, installs it and moves the installed tree elsewhere, as packages do.
#
# usage: cmake -DSOURCE=... -DBUILD=... -DINSTALLED=... -P install.cmake -- CMAKE_OPTION...
set(options "")
set(after_dashes OFF)
math(EXPR last "${CMAKE_ARGC} - 1")
foreach(i RANGE ${last})
  if(after_dashes)
    list(APPEND options "${CMAKE_ARGV${i}}")
  elseif(CMAKE_ARGV${i} STREQUAL "--")
    set(after_dashes ON)
  endif()
endforeach()

function(run)
  execute_process(COMMAND "${CMAKE_COMMAND}" ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

run(-S "${SOURCE}" -B "${BUILD}" -DVORBEL_BUILD_TESTS=OFF -DVORBEL_BUILD_EXAMPLES=OFF ${options})
run(--build "${BUILD}" --config Release)
file(REMOVE_RECURSE "${BUILD}/stage" "${INSTALLED}")
run(--install "${BUILD}" --config Release --prefix "${BUILD}/stage")
file(RENAME "${BUILD}/stage" "${INSTALLED}")
