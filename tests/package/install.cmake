# Installs a build and moves the installed tree elsewhere, as packages do; first builds SOURCE there, if that is given.
#
# usage: cmake [-DSOURCE=...] -DBUILD=... -DCONFIG=... -DINSTALLED=... -P install.cmake -- CMAKE_OPTION...
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

if(SOURCE)
  run(-S "${SOURCE}" -B "${BUILD}" -DVORBEL_BUILD_TESTS=OFF -DVORBEL_BUILD_EXAMPLES=OFF -DVORBEL_BUILD_TOOL=OFF
    ${options})
  run(--build "${BUILD}" --config "${CONFIG}")
endif()
file(REMOVE_RECURSE "${INSTALLED}.stage" "${INSTALLED}")
run(--install "${BUILD}" --config "${CONFIG}" --prefix "${INSTALLED}.stage")
file(RENAME "${INSTALLED}.stage" "${INSTALLED}")
