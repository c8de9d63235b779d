# nlohmann's JSON is headers only, and reached through a link of its own, as CLI11 is.
find_path(nlohmann_json_INCLUDE_DIR nlohmann/json.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(nlohmann_json REQUIRED_VARS nlohmann_json_INCLUDE_DIR
  REASON_FAILURE_MESSAGE "install nlohmann-json3-dev or run scripts/setup")

if(nlohmann_json_FOUND AND NOT TARGET nlohmann_json::nlohmann_json)
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/third-party)
  file(CREATE_LINK ${nlohmann_json_INCLUDE_DIR}/nlohmann ${PROJECT_BINARY_DIR}/third-party/nlohmann SYMBOLIC)
  add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
  target_include_directories(nlohmann_json::nlohmann_json SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/third-party)
endif()
