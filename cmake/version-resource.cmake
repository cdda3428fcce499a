# The Windows version resource: the file's properties show its version and what it is, so a
# program that takes no options (Tessarin.exe) still tells its version.
if(WIN32)
  enable_language(RC)
endif()

# zelqa_version_resource(TARGET DESCRIPTION FILE_NAME): gives TARGET a version resource on Windows.
function(zelqa_version_resource target description file_name)
  if(NOT WIN32)
    return()
  endif()
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "EXECUTABLE")
    set(ZELQA_RC_FILE_TYPE 1) # VFT_APP
  else()
    set(ZELQA_RC_FILE_TYPE 2) # VFT_DLL
  endif()
  set(ZELQA_RC_DESCRIPTION "${description}")
  set(ZELQA_RC_FILE_NAME "${file_name}")
  set(rc ${CMAKE_BINARY_DIR}/version-resources/${target}.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${rc} @ONLY)
  target_sources(${target} PRIVATE ${rc})
endfunction()
