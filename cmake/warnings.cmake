# The warnings that everything in this project is built with.
add_library(orif_warnings INTERFACE)
target_compile_options(orif_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(ORIF_WERROR)
  target_compile_options(orif_warnings INTERFACE -Werror)
endif()
