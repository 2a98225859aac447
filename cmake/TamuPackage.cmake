# What other builds find the installed library by: a pkg-config file and a CMake package.
include(CMakePackageConfigHelpers)

# What a static link needs beside the library.
set(TAMU_PRIVATE_LIBRARIES "")
if(TARGET tamu_database)
  set(TAMU_PRIVATE_LIBRARIES " -lsoci_sqlite3 -lsoci_core -lsqlite3")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/tamu.pc.in ${CMAKE_BINARY_DIR}/tamu.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/tamu.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set(tamu_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tamu)
install(EXPORT tamu-targets NAMESPACE tamu:: FILE tamu-config.cmake
  DESTINATION ${tamu_package_dir})
# The package says for which size of pointers it is. -m32 comes with the targets, where CMake does not see it.
set(tamu_size_of_pointer ${CMAKE_SIZEOF_VOID_P})
if(TAMU_32BIT)
  set(CMAKE_SIZEOF_VOID_P 4)
endif()
write_basic_package_version_file(${CMAKE_BINARY_DIR}/tamu-config-version.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
set(CMAKE_SIZEOF_VOID_P ${tamu_size_of_pointer})
install(FILES ${CMAKE_BINARY_DIR}/tamu-config-version.cmake DESTINATION ${tamu_package_dir})
