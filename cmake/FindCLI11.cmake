# CLI11 is headers only. They are reached through a link of their own, so that a cross build sees them without the
# build machine's other headers beside them.
find_path(CLI11_INCLUDE_DIR CLI/CLI.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(CLI11 REQUIRED_VARS CLI11_INCLUDE_DIR
  REASON_FAILURE_MESSAGE "install libcli11-dev or run scripts/setup")

if(CLI11_FOUND AND NOT TARGET CLI11::CLI11)
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/third-party)
  file(CREATE_LINK ${CLI11_INCLUDE_DIR}/CLI ${PROJECT_BINARY_DIR}/third-party/CLI SYMBOLIC)
  add_library(CLI11::CLI11 INTERFACE IMPORTED)
  target_include_directories(CLI11::CLI11 SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/third-party)
endif()
