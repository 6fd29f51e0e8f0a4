include(${CMAKE_CURRENT_LIST_DIR}/headers.cmake)
find_headers(nlohmann_json nlohmann_json::nlohmann_json nlohmann json.hpp)
