# `cmake --install` for programs outside this tree: the units' headers in their folders, the
# libraries, and a package configuration that find_package(Noxdesk CONFIG) reads, with the
# targets Noxdesk::rtl, ::ui, ::tools, ::dialog and ::data. The native build installs the
# pure libraries as static archives.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# The version is the package's own, read from its version record.
file(STRINGS ${PROJECT_SOURCE_DIR}/package/WNOXD13_64.rc nox_version_line REGEX "^FILEVERSION ")
string(REGEX MATCH "[0-9]+,[0-9]+,[0-9]+,[0-9]+" nox_version "${nox_version_line}")
string(REPLACE "," "." NOX_VERSION "${nox_version}")
if(NOT NOX_VERSION)
  message(FATAL_ERROR "package/WNOXD13_64.rc holds no FILEVERSION")
endif()

set(nox_installed nox_rtl nox_ui nox_tools nox_dialog nox_data)
foreach(target IN LISTS nox_installed)
  string(REPLACE "nox_" "" name ${target})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
                                              $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
endforeach()
install(TARGETS ${nox_installed} EXPORT NoxdeskTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
foreach(dir rtl ui tools dialog data)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${dir}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${dir}
          FILES_MATCHING PATTERN "*.h")
endforeach()

set(nox_config_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Noxdesk)
install(EXPORT NoxdeskTargets NAMESPACE Noxdesk:: DESTINATION ${nox_config_dir})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/NoxdeskConfig.cmake.in
                              ${CMAKE_BINARY_DIR}/NoxdeskConfig.cmake
                              INSTALL_DESTINATION ${nox_config_dir})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/NoxdeskConfigVersion.cmake
                                 VERSION ${NOX_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/NoxdeskConfig.cmake ${CMAKE_BINARY_DIR}/NoxdeskConfigVersion.cmake
        DESTINATION ${nox_config_dir})
