include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(vorbel_config_dir "${CMAKE_INSTALL_LIBDIR}/cmake/vorbel")
set(vorbel_generated "${CMAKE_CURRENT_BINARY_DIR}/install")

# vorbel_install(TARGET): a library, its headers, and the files by which CMake and pkg-config find it
function(vorbel_install target)
  set(development ${target}_development)
  string(REPLACE _ - package ${target})
  string(REPLACE _ / headers ${target})
  foreach(property IN ITEMS DESCRIPTION THREADS NEEDS STATIC_NEEDS)
    get_target_property(${property} ${target} VORBEL_${property})
  endforeach()
  get_target_property(type ${target} TYPE)

  install(TARGETS ${target} EXPORT ${target}
    RUNTIME COMPONENT ${target}_runtime
    LIBRARY COMPONENT ${target}_runtime NAMELINK_COMPONENT ${development}
    ARCHIVE COMPONENT ${development}
    INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
  install(EXPORT ${target} NAMESPACE vorbel:: FILE ${package}Targets.cmake
    DESTINATION "${vorbel_config_dir}" COMPONENT ${development})
  file(GLOB public CONFIGURE_DEPENDS "include/${headers}/*.h")
  install(FILES ${public} DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${headers}" COMPONENT ${development})

  # What vorbelConfig.cmake includes for the component
  set(includes ${NEEDS} ${target}Targets)
  list(REMOVE_ITEM includes vorbel)
  list(TRANSFORM includes REPLACE _ -)
  list(TRANSFORM includes REPLACE "(.+)" "include(\"\${CMAKE_CURRENT_LIST_DIR}/\\1.cmake\")\n")
  list(TRANSFORM STATIC_NEEDS REPLACE "(.+)" "find_dependency(\\1)\n" OUTPUT_VARIABLE finds)
  if(NOT target STREQUAL "vorbel")
    list(JOIN finds "" finds)
    list(JOIN includes "" includes)
    file(WRITE "${vorbel_generated}/${package}.cmake" "${finds}${includes}")
    install(FILES "${vorbel_generated}/${package}.cmake" DESTINATION "${vorbel_config_dir}" COMPONENT ${development})
  endif()

  # The .pc file finds its prefix from its own place, and absolute folders stay as they are.
  file(RELATIVE_PATH to_prefix "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
  string(REGEX REPLACE "/$" "" to_prefix "${to_prefix}")
  foreach(dir IN ITEMS LIBDIR INCLUDEDIR)
    set(pc_${dir} "\${prefix}")
    cmake_path(APPEND pc_${dir} "${CMAKE_INSTALL_${dir}}")
  endforeach()
  list(TRANSFORM NEEDS REPLACE _ -)
  list(TRANSFORM NEEDS APPEND " = ${PROJECT_VERSION}")
  list(JOIN NEEDS ", " pc_requires)
  list(APPEND pc_requires ${STATIC_NEEDS})
  list(JOIN pc_requires ", " pc_requires)
  set(pc_definition "")
  set(pc_threads "")
  if(type STREQUAL "STATIC_LIBRARY")
    string(TOUPPER ${target}_STATIC definition)
    set(pc_definition " -D${definition}")
    if(THREADS)
      set(pc_threads " -pthread")
    endif()
  endif()
  configure_file(cmake/library.pc.in "${vorbel_generated}/${package}.pc" @ONLY)
  install(FILES "${vorbel_generated}/${package}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
    COMPONENT ${development})
endfunction()

get_property(vorbel_libraries GLOBAL PROPERTY VORBEL_LIBRARIES)
foreach(library IN LISTS vorbel_libraries)
  vorbel_install(${library})
endforeach()

if(TARGET vorbel_tool)
  install(TARGETS vorbel_tool RUNTIME COMPONENT vorbel_tool)
  get_target_property(manual vorbel_tool VORBEL_MANUAL)
  install(FILES "${manual}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT vorbel_tool)
endif()

configure_package_config_file(cmake/vorbelConfig.cmake.in "${vorbel_generated}/vorbelConfig.cmake"
  INSTALL_DESTINATION "${vorbel_config_dir}" NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${vorbel_generated}/vorbelConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${vorbel_generated}/vorbelConfig.cmake" "${vorbel_generated}/vorbelConfigVersion.cmake"
  DESTINATION "${vorbel_config_dir}" COMPONENT vorbel_development)
