# `cmake --install` for programs outside this tree: the units' headers in their folders, the
# libraries, and a package configuration that find_package(Noxdesk CONFIG) reads, with the
# targets Noxdesk::rtl, ::ui and, natively, ::tools, ::dialog and ::data as static archives;
# on Windows ::package, the package DLL with its import library.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# The version is the package's own, read from its version record.
file(STRINGS ${PROJECT_SOURCE_DIR}/package/WNOXD13_64.rc nox_version_line REGEX "^FILEVERSION ")
string(REGEX MATCH "[0-9]+,[0-9]+,[0-9]+,[0-9]+" nox_version "${nox_version_line}")
string(REPLACE "," "." NOX_VERSION "${nox_version}")
if(NOT NOX_VERSION)
  message(FATAL_ERROR "package/WNOXD13_64.rc holds no FILEVERSION")
endif()

# Natively the units are static archives. On Windows they are in the package DLL, which
# exports their surface (Noxdesk::package, with designide.dll beside it); a program using it
# imports that surface, and takes the framework's counterparts that the units' headers use
# (Noxdesk::rtl, Noxdesk::ui) as archives of its own.
if(WIN32)
  set(nox_installed nox_rtl nox_ui WNOXD13_64 designide)
  set_target_properties(WNOXD13_64 PROPERTIES EXPORT_NAME package)
  target_compile_definitions(WNOXD13_64 INTERFACE NOX_PACKAGE_IMPORT)
  target_include_directories(WNOXD13_64 INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
else()
  set(nox_installed nox_rtl nox_ui nox_tools nox_dialog nox_data)
endif()
foreach(target IN LISTS nox_installed)
  string(REPLACE "nox_" "" name ${target})
  if(NOT target STREQUAL "WNOXD13_64")
    set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  endif()
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
                                              $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
endforeach()
install(TARGETS ${nox_installed} EXPORT NoxdeskTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
foreach(dir rtl ui tools dialog data host package ide)
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
