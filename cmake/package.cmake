# What is installed, and the packages: Debian's, and a zip archive for Windows. The simulated controller comes with the
# development files, so that a program can be written and tested without a robot.
include(CMakePackageConfigHelpers)

set(cmake_files ${CMAKE_INSTALL_LIBDIR}/cmake/orif)

install(TARGETS
  orif_shared orif_static orif_live_shared orif_live_static orif_simulator orif_served EXPORT orifTargets)
if(WIN32)
  set(component_directory ${CMAKE_INSTALL_BINDIR})
else()
  set(component_directory ${CMAKE_INSTALL_LIBDIR}/orif)
endif()
if(TARGET orif_scenario)
  install(TARGETS orif_scenario EXPORT orifTargets)
  install(FILES simulator/scenario/Scenario.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orif-simulator/simulator/scenario)
  install(FILES simulator/scenario/scenario.schema.json DESTINATION ${CMAKE_INSTALL_DATADIR}/orif)
  set(scenario_pc orif-scenario)
endif()
install(TARGETS OrvexCommLibSimulator LIBRARY DESTINATION ${component_directory} COMPONENT programs)
if(TARGET OrifAutomation)
  install(TARGETS OrifAutomation LIBRARY DESTINATION ${component_directory} COMPONENT programs)
endif()

install(EXPORT orifTargets NAMESPACE orif:: DESTINATION ${cmake_files})
configure_package_config_file(cmake/orifConfig.cmake.in orifConfig.cmake
  INSTALL_DESTINATION ${cmake_files})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/orifConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/orifConfig.cmake ${PROJECT_BINARY_DIR}/orifConfigVersion.cmake
  DESTINATION ${cmake_files})

# The .pc files find their prefix from where they stand, so a tree that was moved or unpacked works as it is.
file(RELATIVE_PATH pc_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
foreach(name orif orif-live orif-simulator orif-served ${scenario_pc})
  configure_file(cmake/${name}.pc.in ${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

install(FILES README.md CHANGELOG.md CONTRIBUTING.md SECURITY.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)
file(GLOB pages CONFIGURE_DEPENDS docs/*.md)
file(GLOB pictures CONFIGURE_DEPENDS docs/images/*.svg docs/images/*.png)
file(GLOB programs CONFIGURE_DEPENDS examples/*.cpp)
install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs)
install(FILES ${pictures} DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs/images)
install(FILES ${programs} examples/orif-record.service DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
if(WIN32)
  file(GLOB scripts CONFIGURE_DEPENDS examples/automation/*)
  install(FILES ${scripts} DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples/automation)
endif()

# A scenario names the schema by the way there, which is another one from where it is installed.
file(RELATIVE_PATH schema
  /${CMAKE_INSTALL_DOCDIR}/examples/scenarios /${CMAKE_INSTALL_DATADIR}/orif/scenario.schema.json)
file(GLOB scenarios CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} examples/scenarios/*.json)
foreach(scenario IN LISTS scenarios)
  file(READ ${scenario} text)
  string(REPLACE ../../simulator/scenario/scenario.schema.json ${schema} text "${text}")
  file(CONFIGURE OUTPUT ${scenario} CONTENT "${text}" @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${scenario} DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples/scenarios)
endforeach()

# In the machine's own directories the run-time linker finds the library once its cache knows it. What is installed for
# a package (DESTDIR, or another prefix) is not there yet.
if(CMAKE_SYSTEM_NAME STREQUAL Linux)
  install(CODE [[
    if("$ENV{DESTDIR}" STREQUAL "" AND CMAKE_INSTALL_PREFIX MATCHES "^/usr(/local)?$")
      find_program(ldconfig ldconfig PATHS /sbin /usr/sbin)
      execute_process(COMMAND ${ldconfig} RESULT_VARIABLE failed)
      if(failed)
        message(WARNING "Programs find the library once root has run ldconfig.")
      endif()
    endif()]])
endif()

# A project that contains this one makes packages of its own.
if(NOT PROJECT_IS_TOP_LEVEL)
  return()
endif()

set(CPACK_PACKAGE_CONTACT "orif maintainers <maintainers@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Robot-controller interface library and tool")
set(CPACK_PACKAGE_DESCRIPTION "Reads and writes the data of robot controllers: registers, positions, texts, system
variables, tasks, alarms and signals. Contains the library with its development files, a simulated controller, and the
command-line tool orif.")
set(CPACK_STRIP_FILES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(processor i686)
  else()
    set(processor x86_64)
  endif()
  set(CPACK_PACKAGE_FILE_NAME orif-${PROJECT_VERSION}-windows-${processor})
  set(ORIF_32BIT_BUILD "" CACHE PATH
    "A build for 32-bit Windows, whose tool and components the packages get too; with it there is an installer")
  if(ORIF_32BIT_BUILD AND TARGET OrifAutomation)
    list(APPEND CPACK_GENERATOR NSIS)  # NSIS.template.in
    set(CPACK_PACKAGE_VENDOR orif)
    set(CPACK_MONOLITHIC_INSTALL ON)
    set(CPACK_INSTALL_CMAKE_PROJECTS
      ${PROJECT_BINARY_DIR} orif ALL /
      ${ORIF_32BIT_BUILD} orif programs /x86)
  endif()
else()
  # Two packages: orif, and orif-gateway.
  set(CPACK_GENERATOR DEB)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_DEBIAN_ORIF_PACKAGE_NAME orif)
  set(CPACK_DEBIAN_GATEWAY_PACKAGE_NAME orif-gateway)
  set(CPACK_DEBIAN_GATEWAY_PACKAGE_SECTION net)
  set(CPACK_DEBIAN_GATEWAY_DESCRIPTION "Gateway of robot controllers to an MQTT broker
 Publishes the values of many robot controllers, unattended: a connection for each, a buffer on disk, metrics.")
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS gnuplot-nox)
  set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
  set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
endif()
include(CPack)
if(NOT WIN32)
  cpack_add_component_group(orif)
  cpack_add_component(Unspecified GROUP orif)
  cpack_add_component(programs GROUP orif)
  if(TARGET orif_gateway)
    cpack_add_component_group(gateway)
    cpack_add_component(gateway GROUP gateway)
  endif()
endif()
