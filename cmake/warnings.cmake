# The warnings that everything in this project is built with.
add_library(orif_warnings INTERFACE)
target_compile_options(orif_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # g++ 12 sees an overlap in "text" + std::string(...) that is not there (its bug 105651).
  target_compile_options(orif_warnings INTERFACE -Wno-restrict)
  if(MINGW)  # where it sees lengths of texts, too, that are not there
    target_compile_options(orif_warnings INTERFACE -Wno-array-bounds -Wno-stringop-overflow)
  endif()
endif()
if(ORIF_WERROR)
  target_compile_options(orif_warnings INTERFACE -Werror)
endif()
