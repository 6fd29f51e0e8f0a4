# Finds a library that is headers alone, which are good for any system, among the packages of this machine. They are
# reached through a link: the directory that they lie in has the headers of this system as well.
macro(find_headers package target directory header)
  find_path(${package}_HEADERS ${directory}/${header} PATHS /usr/include NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  include(FindPackageHandleStandardArgs)
  find_package_handle_standard_args(${package} REQUIRED_VARS ${package}_HEADERS)
  if(${package}_FOUND AND NOT TARGET ${target})
    set(links ${CMAKE_BINARY_DIR}/headers)
    file(MAKE_DIRECTORY ${links})
    file(CREATE_LINK ${${package}_HEADERS}/${directory} ${links}/${directory} SYMBOLIC)
    add_library(${target} INTERFACE IMPORTED)
    target_include_directories(${target} SYSTEM INTERFACE ${links})
  endif()
endmacro()
