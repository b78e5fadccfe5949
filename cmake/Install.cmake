include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(vorbel_config_dir "${CMAKE_INSTALL_LIBDIR}/cmake/vorbel")
set(vorbel_generated "${CMAKE_CURRENT_BINARY_DIR}/install")

install(TARGETS vorbel EXPORT vorbelTargets
  RUNTIME COMPONENT runtime
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development
  INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(DIRECTORY include/vorbel DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
  COMPONENT development FILES_MATCHING PATTERN "*.h")

install(EXPORT vorbelTargets NAMESPACE vorbel:: DESTINATION "${vorbel_config_dir}" COMPONENT development)
configure_package_config_file(cmake/vorbelConfig.cmake.in "${vorbel_generated}/vorbelConfig.cmake"
  INSTALL_DESTINATION "${vorbel_config_dir}" NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${vorbel_generated}/vorbelConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${vorbel_generated}/vorbelConfig.cmake" "${vorbel_generated}/vorbelConfigVersion.cmake"
  DESTINATION "${vorbel_config_dir}" COMPONENT development)

# vorbel.pc finds its prefix from its own place, and absolute folders stay as they are.
file(RELATIVE_PATH vorbel_pc_to_prefix "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" vorbel_pc_to_prefix "${vorbel_pc_to_prefix}")
foreach(dir IN ITEMS LIBDIR INCLUDEDIR)
  set(vorbel_pc_${dir} "\${prefix}")
  cmake_path(APPEND vorbel_pc_${dir} "${CMAKE_INSTALL_${dir}}")
endforeach()
set(vorbel_pc_definition "")
if(vorbel_type STREQUAL "STATIC_LIBRARY")
  set(vorbel_pc_definition " -DVORBEL_STATIC")
endif()
configure_file(cmake/vorbel.pc.in "${vorbel_generated}/vorbel.pc" @ONLY)
install(FILES "${vorbel_generated}/vorbel.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)
