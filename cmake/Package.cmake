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
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME "libvorbel${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "Orbit propagation, reference frames and imaging geometry.\nThis is the dynamic library.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvorbel-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "Orbit propagation, reference frames and imaging geometry.\nThese are the headers, and what CMake and pkg-config need.")

if(vorbel_type STREQUAL "STATIC_LIBRARY")
  set(CPACK_COMPONENTS_ALL development)
else()
  set(CPACK_COMPONENTS_ALL runtime development)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} (= ${PROJECT_VERSION})")
endif()

include(CPack)
