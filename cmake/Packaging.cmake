# What is installed, and the packages made of it:
#   library      the shared library, under the names that callers load and link
#   development  the exported headers, the platform's declarations, the CMake package and pkg-config
#   softcard     the software card and its command
include(CMakePackageConfigHelpers)
set(package ${PROJECT_NAME})
set(package_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${package})
set(package_include_dir ${CMAKE_INSTALL_INCLUDEDIR}/${package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libhal-switch-l3-mpls-encapsulation-ll-bcm${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libhal-switch-l3-mpls-encapsulation-ll-bcm-dev)
set(CPACK_DEBIAN_SOFTCARD_PACKAGE_NAME softcard)

# Callers load the library by the name without a version: the link belongs to the library, not to its development.
install(TARGETS hal_switch_l3_mpls_encapsulation_ll_bcm EXPORT encapsulation
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT library
  INCLUDES DESTINATION ${package_include_dir})
install(EXPORT encapsulation NAMESPACE hal:: FILE encapsulation-targets.cmake
  DESTINATION ${package_cmake_dir} COMPONENT development)
install(DIRECTORY include/ DESTINATION ${package_include_dir} COMPONENT development)
if(HAL_PLATFORM STREQUAL "softcard")
  install(DIRECTORY platform/ DESTINATION ${package_include_dir} COMPONENT development)
endif()

configure_package_config_file(cmake/config.cmake.in ${PROJECT_BINARY_DIR}/package/${package}-config.cmake
  INSTALL_DESTINATION ${package_cmake_dir} PATH_VARS CMAKE_INSTALL_LIBDIR package_include_dir)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/${package}-config-version.cmake
  COMPATIBILITY SameMajorVersion)
# pkg_config(COMPONENT NAME DESCRIPTION [REQUIRED-PACKAGE]): NAME.pc, which finds its prefix from where it lies.
function(pkg_config component name description)
  set(requires ${ARGN})
  file(RELATIVE_PATH to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  configure_file(cmake/pkg-config.pc.in ${PROJECT_BINARY_DIR}/package/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/package/${name}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${component})
endfunction()
pkg_config(development ${package} "${PROJECT_DESCRIPTION}; takes a platform beside it, softcard for instance")
install(FILES ${PROJECT_BINARY_DIR}/package/${package}-config.cmake
  ${PROJECT_BINARY_DIR}/package/${package}-config-version.cmake
  DESTINATION ${package_cmake_dir} COMPONENT development)

if(HAL_PLATFORM STREQUAL "softcard")
  install(TARGETS softcard_platform EXPORT softcard
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT softcard
    INCLUDES DESTINATION ${package_include_dir})
  set_target_properties(softcard PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  set_target_properties(softcard-replay PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS hal_card_recorder LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT softcard)
  install(TARGETS softcard softcard-replay RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT softcard)
  if(NOT CMAKE_CROSSCOMPILING)
    install(FILES ${PROJECT_BINARY_DIR}/console/softcard.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT softcard)
    install(FILES ${PROJECT_BINARY_DIR}/console/softcard.bash RENAME softcard
      DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT softcard)
  endif()
  # Included from the root, as "softcard/Card.h"; folders without headers are not made.
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} calls/*.h softcard/*.h)
  foreach(header IN LISTS headers)
    cmake_path(GET header PARENT_PATH folder)
    install(FILES ${header} DESTINATION ${package_include_dir}/${folder} COMPONENT softcard)
  endforeach()
  pkg_config(softcard softcard "A line card in software, the platform of ${package}" ${package})
  install(DIRECTORY scenarios/ DESTINATION ${CMAKE_INSTALL_DATADIR}/softcard/scenarios COMPONENT softcard)
  # The command contains these libraries.
  foreach(library libcli11-dev:CLI11 nlohmann-json3-dev:nlohmann-json libasio-dev:asio)
    string(REPLACE ":" ";" library ${library})
    list(POP_FRONT library package_name name)
    install(FILES /usr/share/doc/${package_name}/copyright RENAME copyright.${name}
      DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/softcard COMPONENT softcard OPTIONAL)
  endforeach()
  install(EXPORT softcard NAMESPACE hal:: FILE softcard-targets.cmake
    DESTINATION ${package_cmake_dir} COMPONENT softcard)
endif()

# Debian packages: cpack -G DEB.
set(CPACK_PACKAGE_NAME ${package})
set(CPACK_PACKAGE_VENDOR "")
set(CPACK_PACKAGE_CONTACT "Card software <card-software@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_OUTPUT_FILE_PREFIX ${PROJECT_BINARY_DIR}/packages)
set(CPACK_COMPONENTS_ALL library development softcard)
if(CMAKE_CROSSCOMPILING OR HAL_PLATFORM STREQUAL "external")
  # A card gets the library alone.
  set(CPACK_COMPONENTS_ALL library)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_SOFTCARD_PACKAGE_SECTION devel)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "Outgoing layer-3 and MPLS encapsulations of a line card
 The library that a line card's hardware-abstraction layer loads. It expects
 the card's platform in the process: its own, or the software card.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Headers of the encapsulation library
 The exported interfaces, the declarations of the platform that the library
 calls, a CMake package and a pkg-config file.")
set(CPACK_COMPONENT_SOFTCARD_DESCRIPTION "Line card in software
 Runs scenarios against the encapsulation library and shows every call, table
 and packet.")
set(exact_library "${CPACK_DEBIAN_LIBRARY_PACKAGE_NAME} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${exact_library}")
set(CPACK_DEBIAN_SOFTCARD_PACKAGE_DEPENDS "${exact_library}")
# Its headers and its pkg-config file build on that package's; the command does without.
set(CPACK_DEBIAN_SOFTCARD_PACKAGE_SUGGESTS "${CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/package/triggers)
set(CPACK_DEBIAN_SOFTCARD_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/package/triggers)
file(WRITE ${PROJECT_BINARY_DIR}/package/triggers "activate-noawait ldconfig\n")
if(CMAKE_CROSSCOMPILING)
  # The target's package database is not here to ask; a test holds this against the versions that the library names.
  string(REPLACE "i686" "i386" CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${CMAKE_SYSTEM_PROCESSOR})
  set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS "libc6 (>= 2.32), libgcc-s1 (>= 3.0), libstdc++6 (>= 11)")
else()
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src ${PROJECT_BINARY_DIR}/softcard
    ${PROJECT_BINARY_DIR}/recorder)
  set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
endif()
include(CPack)
