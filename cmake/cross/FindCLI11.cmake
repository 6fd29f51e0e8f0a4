include(${CMAKE_CURRENT_LIST_DIR}/headers.cmake)
find_headers(CLI11 CLI11::CLI11 CLI CLI.hpp)
