# CPack: on Linux two Debian packages, zelqa (what an installed application needs at run
# time: the shared library, Tessarin.exe, the tools, the documents) and zelqa-dev (what
# building one needs); on Windows one zip of the whole install. scripts/package makes them all.
set(CPACK_PACKAGE_NAME zelqa)
set(CPACK_PACKAGE_VENDOR "zelqa")
set(CPACK_PACKAGE_CONTACT "zelqa developers <zelqa@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "The run-time files of an installed ZELQA application.\n\
The shared library compiled ZELQA applications link, the installer that puts an\n\
application's staged update in place (Tessarin.exe, kept beside the application),\n\
and stage-update, which stages such an update.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "The development files for building ZELQA applications.\n\
The public headers, the static library, the CMake package (find_package(zelqa))\n\
and the pkg-config files zelqa.pc and zelqa_static.pc.")

if(WIN32)
  set(CPACK_GENERATOR ZIP)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(CPACK_SYSTEM_NAME win64)
  else()
    set(CPACK_SYSTEM_NAME win32)
  endif()
  set(CPACK_PACKAGE_FILE_NAME zelqa-${PROJECT_VERSION}-${CPACK_SYSTEM_NAME})
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME zelqa)
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME zelqa-dev)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "zelqa (= ${PROJECT_VERSION})")
endif()
include(CPack)
