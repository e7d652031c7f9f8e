# Where a user of the system expects things: library, header, pkg-config file, CMake package,
# programs, shipped settings.
include(CMakePackageConfigHelpers)

install(TARGETS zeldlglib EXPORT zeldlgTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime
                NAMELINK_COMPONENT development
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
# In the folder where the library looks for it, from its own.
install(TARGETS zeldlg-helper DESTINATION ${CMAKE_INSTALL_LIBDIR}/zeldlg COMPONENT runtime)
install(DIRECTORY include/zeldlg DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
# The library reads /usr/share/tessaly/registry: under another prefix the file is a sample.
install(FILES packaging/registry DESTINATION ${CMAKE_INSTALL_DATADIR}/tessaly COMPONENT runtime)
if(ZELDLG_BUILD_PROGRAMS)
    foreach(program IN ITEMS demo settings)
        install(TARGETS zeldlg-${program} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${program})
        install(FILES $<TARGET_PROPERTY:zeldlg-${program},MANUAL>
                DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${program})
    endforeach()
endif()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/zeldlg)
install(EXPORT zeldlgTargets NAMESPACE zeldlg:: DESTINATION ${package_dir} COMPONENT development)
configure_package_config_file(cmake/zeldlgConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/zeldlgConfig.cmake
                              INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zeldlgConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zeldlgConfig.cmake
              ${PROJECT_BINARY_DIR}/zeldlgConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT development)

# It is finished when it is installed: the prefix may be another one then.
cmake_path(APPEND pc_libdir "\${prefix}" ${CMAKE_INSTALL_LIBDIR})
cmake_path(APPEND pc_includedir "\${prefix}" ${CMAKE_INSTALL_INCLUDEDIR})
set(pc_prefix @CMAKE_INSTALL_PREFIX@)
configure_file(cmake/zeldlg.pc.in ${PROJECT_BINARY_DIR}/zeldlg.pc.in @ONLY)
install(CODE "configure_file(\"${PROJECT_BINARY_DIR}/zeldlg.pc.in\"
                             \"${PROJECT_BINARY_DIR}/zeldlg.pc\" @ONLY)" COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/zeldlg.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# The package for hosts in Python goes where Debian's interpreter looks, whatever the prefix.
install(DIRECTORY python/zeldlg DESTINATION lib/python3/dist-packages COMPONENT python
        PATTERN __pycache__ EXCLUDE)

# The host over PKCS#11, and the module that p11-kit finds beside all others.
if(TARGET zeldlg-p11)
    install(TARGETS zeldlg-p11 DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT pkcs11)
    install(TARGETS zeldlg-p11-module
            DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkcs11 COMPONENT pkcs11)
    install(FILES examples/pkcs11/zeldlg-p11.module
            DESTINATION ${CMAKE_INSTALL_DATADIR}/p11-kit/modules COMPONENT pkcs11)
    install(FILES examples/pkcs11/zeldlg-p11.1
            DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT pkcs11)
endif()
