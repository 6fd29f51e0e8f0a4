# Finds the stand-alone Asio, headers alone.
include(${CMAKE_CURRENT_LIST_DIR}/cross/headers.cmake)
find_headers(Asio Asio::Asio asio io_context.hpp)
if(Asio_FOUND)
  target_compile_definitions(Asio::Asio INTERFACE ASIO_STANDALONE ASIO_NO_DEPRECATED
    $<$<BOOL:${WIN32}>:_WIN32_WINNT=0x0A00>)
endif()
