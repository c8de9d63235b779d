# Builds the module against a card's own headers and libraries, after checking that they give all that it needs.
#   HAL_PLATFORM_INCLUDE_DIRS  where bcm/ and hal/ are
#   HAL_PLATFORM_LIBRARIES     files that define what these declare; checked, not linked: the process loads them
# Paths, which CMake takes from where it is called and keeps as absolute ones.
set(HAL_PLATFORM_INCLUDE_DIRS "" CACHE PATH "Directories that hold the card's bcm/ and hal/ headers")
set(HAL_PLATFORM_LIBRARIES "" CACHE FILEPATH "The card's libraries, as files")

foreach(setting HAL_PLATFORM_INCLUDE_DIRS HAL_PLATFORM_LIBRARIES)
  if(NOT ${setting})
    message(FATAL_ERROR " HAL_PLATFORM is external: set ${setting} too, as docs/integration.md shows.")
  endif()
  foreach(path IN LISTS ${setting})
    if(NOT IS_ABSOLUTE ${path})
      message(FATAL_ERROR " ${setting} names ${path} as a text, not as a path: write -D${setting}=${path}, or the whole path.")
    elseif(NOT EXISTS ${path})
      message(FATAL_ERROR " ${setting} names ${path}, which does not exist.")
    endif()
  endforeach()
endforeach()
foreach(header bcm/error.h bcm/mpls.h bcm/switch.h hal/EgressManager.h hal/HalBcmCommon.h hal/HalCallbacksItf.h
    hal/HwEncapsulationResourceManager.h hal/HwObject.h hal/IngressManager.h hal/IntfManager.h hal/IntfObject.h
    hal/MyStationManager.h hal/TunnelObject.h hal/fm.h hal/limid.h)
  find_file(found_header ${header} PATHS ${HAL_PLATFORM_INCLUDE_DIRS} NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH NO_CACHE)
  if(NOT found_header)
    list(APPEND missing_headers ${header})
  endif()
  unset(found_header)
endforeach()
if(missing_headers)
  list(JOIN missing_headers ", " missing_headers)
  message(FATAL_ERROR " HAL_PLATFORM_INCLUDE_DIRS holds no ${missing_headers}.")
endif()

set(probe ${PROJECT_BINARY_DIR}/platform-probe)
list(TRANSFORM HAL_PLATFORM_INCLUDE_DIRS PREPEND -I OUTPUT_VARIABLE probe_flags)
list(APPEND probe_flags -I${PROJECT_SOURCE_DIR}/include -fPIC)

# Headers first: an object that compiles tells the target as well.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
try_compile(probe_compiles ${probe} SOURCES ${PROJECT_SOURCE_DIR}/cmake/PlatformProbe.cpp
  COMPILE_DEFINITIONS ${probe_flags} CXX_STANDARD 17 CXX_EXTENSIONS OFF
  OUTPUT_VARIABLE probe_log COPY_FILE ${probe}/probe.a)
unset(CMAKE_TRY_COMPILE_TARGET_TYPE)
if(NOT probe_compiles)
  string(REGEX MATCHALL "error: [^\n]*" probe_errors "${probe_log}")
  string(REGEX REPLACE "(^|;)error: " "\n  " probe_errors "${probe_errors}")
  message(FATAL_ERROR " The card's headers lack what the module needs, or declare it otherwise:${probe_errors}\n"
    "docs/integration.md lists what each header has to declare.")
endif()

# "ELF32, big endian, PowerPC" of an object, library or archive; empty for a linker script.
function(elf_target file result)
  execute_process(COMMAND ${CMAKE_READELF} --file-header ${file} OUTPUT_VARIABLE header ERROR_QUIET)
  set(words "")
  foreach(field "Class: +([^\n]+)" "Data: +[^,\n]*, ([^\n]+)" "Machine: +([^\n]+)")
    if(header MATCHES "${field}")
      list(APPEND words "${CMAKE_MATCH_1}")
    endif()
  endforeach()
  list(JOIN words ", " words)
  set(${result} "${words}" PARENT_SCOPE)
endfunction()

elf_target(${probe}/probe.a own_target)
foreach(library IN LISTS HAL_PLATFORM_LIBRARIES)
  elf_target(${library} library_target)
  if(library_target AND NOT library_target STREQUAL own_target)
    message(FATAL_ERROR " ${library} is for ${library_target}, but the compiler makes code for ${own_target}: "
      "set CMAKE_TOOLCHAIN_FILE to the card's toolchain, cmake/powerpc-linux-gnu.cmake for instance.")
  endif()
endforeach()

# A shared library whose undefined symbols are errors: the linker names each that no library defines.
try_compile(probe_links ${probe} SOURCES ${PROJECT_SOURCE_DIR}/cmake/PlatformProbe.cpp
  COMPILE_DEFINITIONS ${probe_flags} CXX_STANDARD 17 CXX_EXTENSIONS OFF
  LINK_OPTIONS -shared -Wl,-z,defs -Wl,--demangle LINK_LIBRARIES ${HAL_PLATFORM_LIBRARIES}
  OUTPUT_VARIABLE probe_log)
if(NOT probe_links)
  string(REGEX MATCHALL "undefined reference to [`'][^\n]*'" missing_symbols "${probe_log}")
  list(REMOVE_DUPLICATES missing_symbols)
  string(REGEX REPLACE "(^|;)undefined reference to [`']([^\n;]*)'" "\n  \\2" missing_symbols "${missing_symbols}")
  if(NOT missing_symbols)
    set(missing_symbols "\n${probe_log}")
  endif()
  message(FATAL_ERROR " The card's libraries do not define what the module calls:${missing_symbols}\n"
    "Add the libraries that define it to HAL_PLATFORM_LIBRARIES.")
endif()

target_include_directories(hal_headers INTERFACE ${HAL_PLATFORM_INCLUDE_DIRS})
