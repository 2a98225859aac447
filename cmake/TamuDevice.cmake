# What the embedded device's stores are kept with: SOCI over SQLite. There are no 32-bit packages of
# them, so that such builds have no stores.
option(TAMU_DEVICE "Build the embedded device's stores (SOCI and SQLite)" ON)
if(NOT TAMU_DEVICE OR TAMU_32BIT OR WIN32)
  return()
endif()

# SOCI brings no CMake package. Its headers are included as <soci/soci.h>, and include Boost's.
foreach(tamu_part
    "soci/soci.h libsoci-dev" "sqlite3.h libsqlite3-dev" "boost/version.hpp libboost-dev")
  separate_arguments(tamu_part)
  list(GET tamu_part 0 tamu_header)
  list(GET tamu_part 1 tamu_package)
  string(MAKE_C_IDENTIFIER TAMU_HEADER_${tamu_header} tamu_variable)
  find_path(${tamu_variable} ${tamu_header})
  mark_as_advanced(${tamu_variable})
  if(NOT ${tamu_variable})
    list(APPEND tamu_missing_packages ${tamu_package})
  endif()
endforeach()
foreach(tamu_part "soci_core libsoci-dev" "soci_sqlite3 libsoci-dev" "sqlite3 libsqlite3-dev")
  separate_arguments(tamu_part)
  list(GET tamu_part 0 tamu_library)
  list(GET tamu_part 1 tamu_package)
  find_library(TAMU_LIBRARY_${tamu_library} ${tamu_library})
  mark_as_advanced(TAMU_LIBRARY_${tamu_library})
  if(NOT TAMU_LIBRARY_${tamu_library})
    list(APPEND tamu_missing_packages ${tamu_package})
  endif()
endforeach()
if(tamu_missing_packages)
  list(REMOVE_DUPLICATES tamu_missing_packages)
  list(JOIN tamu_missing_packages " " tamu_missing_packages)
  message(FATAL_ERROR "The embedded device needs the packages ${tamu_missing_packages}: "
    "scripts/install-packages installs them. -DTAMU_DEVICE=OFF builds without it.")
endif()

# Exists when the device is built.
add_library(tamu_database INTERFACE)
target_link_libraries(tamu_database INTERFACE
  ${TAMU_LIBRARY_soci_sqlite3} ${TAMU_LIBRARY_soci_core} ${TAMU_LIBRARY_sqlite3})
target_include_directories(tamu_database SYSTEM INTERFACE
  ${TAMU_HEADER_soci_soci_h} ${TAMU_HEADER_sqlite3_h} ${TAMU_HEADER_boost_version_hpp})
