# cpack: Debian packages where they can be made, otherwise an archive.
find_program(VORBEL_DPKG_DEB dpkg-deb)
mark_as_advanced(VORBEL_DPKG_DEB)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
elseif(VORBEL_DPKG_DEB)
  set(CPACK_GENERATOR DEB)
else()
  set(CPACK_GENERATOR TGZ)
endif()

set(CPACK_PACKAGE_VENDOR "vorbel developers")
set(CPACK_PACKAGE_CONTACT "vorbel developers <vorbel@localhost>")
set(CPACK_STRIP_FILES ON)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}")  # libraries of the project find each other
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_COMPONENTS_ALL "")

# vorbel_package(COMPONENT NAME SECTION DESCRIPTION PACKAGE...): what is installed as COMPONENT; needs the PACKAGEs
macro(vorbel_package component name section description)
  string(TOUPPER ${component} vorbel_component)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${vorbel_component}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${vorbel_component}_PACKAGE_SECTION ${section})
  set(CPACK_COMPONENT_${vorbel_component}_DESCRIPTION "${description}")
  string(REPLACE ";" ", " CPACK_DEBIAN_${vorbel_component}_PACKAGE_DEPENDS "${ARGN}")
endmacro()

set(vorbel_same "(= ${PROJECT_VERSION})")
set(vorbel_soversion "${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}")
foreach(library IN LISTS vorbel_libraries)
  string(REPLACE _ - package lib${library})
  get_target_property(description ${library} VORBEL_DESCRIPTION)
  get_target_property(needs ${library} VORBEL_NEEDS)
  get_target_property(static_needs ${library} VORBEL_STATIC_NEEDS)
  list(TRANSFORM needs REPLACE _ -)
  list(TRANSFORM needs REPLACE "(.+)" "lib\\1${vorbel_soversion} ${vorbel_same}" OUTPUT_VARIABLE runtimes)
  list(TRANSFORM needs REPLACE "(.+)" "lib\\1-dev ${vorbel_same}" OUTPUT_VARIABLE developments)
  list(TRANSFORM static_needs REPLACE "(.+)" "lib\\1-dev")
  get_target_property(type ${library} TYPE)
  if(NOT type STREQUAL "STATIC_LIBRARY")
    vorbel_package(${library}_runtime ${package}${vorbel_soversion} libs
      "${description}.\nThis is the dynamic library." ${runtimes})
    list(PREPEND developments "${package}${vorbel_soversion} ${vorbel_same}")
  endif()
  vorbel_package(${library}_development ${package}-dev libdevel
    "${description}.\nThese are the headers, and what CMake and pkg-config need." ${developments} ${static_needs})
endforeach()

if(TARGET vorbel_tool)
  get_target_property(type vorbel_products TYPE)
  set(runtimes "")
  if(NOT type STREQUAL "STATIC_LIBRARY")
    set(runtimes "libvorbel-products${vorbel_soversion} ${vorbel_same}")
  endif()
  vorbel_package(vorbel_tool vorbel-tools science
    "Geometry of satellite radar products.\nThe command vorbel locates pixels and points, and makes outlines and grids."
    ${runtimes})
endif()

include(CPack)
