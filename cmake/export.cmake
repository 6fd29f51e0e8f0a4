# The header with a library's export macros, PREFIX_EXPORT and PREFIX_HEADER_TYPE. A type that is wholly in headers is
# known by its name in every module of a Windows program, and is exported by none.
include(GenerateExportHeader)

function(make_export_header target prefix file)
  string(TOUPPER ${prefix} upper)
  set(header_type "#define ${upper}_HEADER_TYPE")
  if(NOT WIN32)
    string(APPEND header_type " ${upper}_EXPORT")
  endif()
  generate_export_header(${target} BASE_NAME ${prefix}
    EXPORT_FILE_NAME ${file} CUSTOM_CONTENT_FROM_VARIABLE header_type)
endfunction()
