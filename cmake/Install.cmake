# Install rules: the library, its public headers, a CMake package and a pkg-config file.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS zelkor-foundation EXPORT ZelkorFoundationTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

# Every header but what is internal.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/Foundation DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h"
  PATTERN "Internal" EXCLUDE)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZelkorFoundation)
install(EXPORT ZelkorFoundationTargets NAMESPACE Zelkor:: DESTINATION ${package_dir})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/ZelkorFoundationConfig.cmake.in
  ${PROJECT_BINARY_DIR}/ZelkorFoundationConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZelkorFoundationConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZelkorFoundationConfig.cmake
  ${PROJECT_BINARY_DIR}/ZelkorFoundationConfigVersion.cmake DESTINATION ${package_dir})

# Told from where the file is, so that an installation may be moved.
file(RELATIVE_PATH ZELKOR_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${PROJECT_SOURCE_DIR}/cmake/zelkor-foundation.pc.in
  ${PROJECT_BINARY_DIR}/zelkor-foundation.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zelkor-foundation.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/docs/licenses/Unicode-3.0.txt
  ${PROJECT_SOURCE_DIR}/docs/licenses/Globalize-MIT.txt
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/zelkor-foundation)
