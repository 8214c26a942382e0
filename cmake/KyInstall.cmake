# Installs the libraries, the flat public headers under include/kygraph/, a CMake package
# (find_package(KyGraph CONFIG) -> KyGraph::KyGraph, KyGraph::KyArithm, KyGraph::Widgetry)
# and a pkg-config file.
include(CMakePackageConfigHelpers)

get_property(KY_ALL_HEADERS GLOBAL PROPERTY KY_INSTALL_HEADERS)
install(FILES ${KY_ALL_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kygraph)

install(TARGETS KyFramework KyArithm Widgetry KyGraph EXPORT KyGraphTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT KyGraphTargets NAMESPACE KyGraph:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/KyGraph)

configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/KyGraphConfig.cmake.in
  ${CMAKE_BINARY_DIR}/KyGraphConfig.cmake INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/KyGraph)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/KyGraphConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/KyGraphConfig.cmake ${CMAKE_BINARY_DIR}/KyGraphConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/KyGraph)

# The prefix is found from the .pc file's own place, so an install tree that is moved (or
# installed with --prefix elsewhere than configured) still resolves.
file(RELATIVE_PATH KY_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${CMAKE_SOURCE_DIR}/cmake/kygraph.pc.in ${CMAKE_BINARY_DIR}/kygraph.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/kygraph.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
