# What `cmake --install` puts where (GNUInstallDirs), in two components: "runtime" (the
# shared library, Tessarin.exe and the tools, the documents) and "development" (headers,
# the static library and the link-time name of the shared one, the CMake package and the
# pkg-config files, the example).
include(CMakePackageConfigHelpers)

set(ZELQA_CMAKE_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zelqa)

# zelqa_install_program(TARGET): installs a program of apps/ with the runtime and makes it
# known to users of the CMake package as zelqa::TARGET.
function(zelqa_install_program target)
  install(TARGETS ${target} EXPORT zelqa-targets RUNTIME COMPONENT runtime)
endfunction()

install(TARGETS zelqa zelqa_static EXPORT zelqa-targets
  RUNTIME COMPONENT runtime
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
  FILES_MATCHING PATTERN "*.h")
install(FILES ${CMAKE_BINARY_DIR}/include/zelqa/version.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zelqa COMPONENT development)

# The CMake package: find_package(zelqa 1.0) takes any 1.x of the same word size.
install(EXPORT zelqa-targets NAMESPACE zelqa:: DESTINATION ${ZELQA_CMAKE_PACKAGE_DIR}
  COMPONENT development)
configure_package_config_file(cmake/zelqa-config.cmake.in
  ${CMAKE_BINARY_DIR}/package/zelqa-config.cmake
  INSTALL_DESTINATION ${ZELQA_CMAKE_PACKAGE_DIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/package/zelqa-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/package/zelqa-config.cmake
  ${CMAKE_BINARY_DIR}/package/zelqa-config-version.cmake
  DESTINATION ${ZELQA_CMAKE_PACKAGE_DIR} COMPONENT development)

# pkg-config: zelqa.pc (the shared library) and zelqa_static.pc. Paths are taken from where
# the .pc file lies, so an unpacked archive or a package root works where it is.
file(RELATIVE_PATH ZELQA_PC_TO_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" ZELQA_PC_TO_PREFIX "${ZELQA_PC_TO_PREFIX}")
foreach(dir LIBDIR INCLUDEDIR)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${dir}}")
    set(ZELQA_PC_${dir} "${CMAKE_INSTALL_${dir}}")
  else()
    set(ZELQA_PC_${dir} "\${prefix}/${CMAKE_INSTALL_${dir}}")
  endif()
endforeach()
# A static link by a C compiler's driver needs the system libraries and the C++ library
# (with libm on Linux); the driver brings the rest (the unwinder is linked statically by mingw).
if(WIN32)
  set(ZELQA_PC_STATIC_LIBRARY "-lzelqa_static")
  set(ZELQA_PC_STATIC_LIBS ${ZELQA_SYSTEM_LIBRARIES} stdc++)
else()
  set(ZELQA_PC_STATIC_LIBRARY "-l:libzelqa.a")
  set(ZELQA_PC_STATIC_LIBS ${ZELQA_SYSTEM_LIBRARIES} stdc++ m)
endif()
list(TRANSFORM ZELQA_PC_STATIC_LIBS PREPEND "-l")
list(JOIN ZELQA_PC_STATIC_LIBS " " ZELQA_PC_STATIC_LIBS)
foreach(pc zelqa zelqa_static)
  configure_file(cmake/${pc}.pc.in ${CMAKE_BINARY_DIR}/package/${pc}.pc @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/package/${pc}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endforeach()

install(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT development)
if(WIN32)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(ZELQA_WINDOWS_ARCH x86-64)
  else()
    set(ZELQA_WINDOWS_ARCH x86)
  endif()
  configure_file(packaging/README-windows.txt ${CMAKE_BINARY_DIR}/package/README.txt @ONLY
    NEWLINE_STYLE CRLF)
  install(FILES ${CMAKE_BINARY_DIR}/package/README.txt DESTINATION . COMPONENT runtime)
endif()
